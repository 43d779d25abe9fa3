#pragma once
// The few operating-system calls MFile needs; one implementation per platform.
#include <cstddef>
#include <cstdint>

namespace FileOs {

using Handle = intptr_t;
constexpr Handle INVALID = -1;

enum class Mode {
    Read,         // existing file, read only
    Create,       // create or truncate, read and write
    CreateNew,    // create, failing when the file exists; read and write
    OpenOrCreate, // open or create without truncating, read and write
    Update,       // existing file, read and write
};

enum class Origin { Begin, Current, End };

Handle Open(const wchar_t* name, Mode mode);
void Close(Handle handle);
// Bytes transferred, -1 on failure.
long long Read(Handle handle, void* data, size_t count);
long long Write(Handle handle, const void* data, size_t count);
// The new position, -1 on failure.
long long Seek(Handle handle, long long offset, Origin origin);
bool Truncate(Handle handle);
// Whether two open handles refer to the same file.
bool SameFile(Handle a, Handle b);

} // namespace FileOs
