#pragma once
// The few operating-system calls MFile needs; one implementation per platform.
#include <cstddef>
#include <cstdint>
#include <functional>

#include "FileSystemExport.h"

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
// Renames a file; with replace false an existing target makes it fail.
bool Rename(const wchar_t* from, const wchar_t* to, bool replace);
bool Remove(const wchar_t* name);
// Asks the system to put the file's data on the disk.
bool Sync(Handle handle);

// The seam through which tests watch this layer and make it fail. Every call above that can
// fail first asks the probe (when one is set) with its kind and byte count (the count of a
// read or write, 0 otherwise); when the probe answers false the call fails as the system's
// would, without touching the file. Process-wide and unguarded: set it only while no other
// thread uses files.
enum class Call { Open, Read, Write, Seek, Truncate, Rename, Remove, Sync };
using Probe = std::function<bool(Call call, size_t bytes)>;
// Installs the probe (an empty one removes it) and returns the one installed before.
KELFS_API Probe SetProbe(Probe probe);
// False when the probe makes this call fail.
bool Allowed(Call call, size_t bytes = 0);

} // namespace FileOs
