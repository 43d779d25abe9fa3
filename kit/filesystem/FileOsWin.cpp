// Windows file layer: wide names straight to CreateFileW.
#include <windows.h>

#include "FileOs.h"

namespace FileOs {

namespace {
HANDLE ToWin(Handle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

// ReadFile and WriteFile take 32-bit counts.
constexpr size_t MAX_CHUNK = 0x40000000;

// A call the probe fails reports a device error, as a failing disk would.
bool Refused(Call call, size_t bytes = 0) {
    if (Allowed(call, bytes))
        return false;
    SetLastError(ERROR_WRITE_FAULT);
    return true;
}
} // namespace

Handle Open(const wchar_t* name, Mode mode) {
    if (Refused(Call::Open))
        return INVALID;
    DWORD access = GENERIC_READ | GENERIC_WRITE;
    DWORD disposition = OPEN_EXISTING;
    switch (mode) {
    case Mode::Read:
        access = GENERIC_READ;
        break;
    case Mode::Create:
        disposition = CREATE_ALWAYS;
        break;
    case Mode::CreateNew:
        disposition = CREATE_NEW;
        break;
    case Mode::OpenOrCreate:
        disposition = OPEN_ALWAYS;
        break;
    case Mode::Update:
        break;
    }
    HANDLE h = CreateFileW(name, access, FILE_SHARE_READ, nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    return h == INVALID_HANDLE_VALUE ? INVALID : reinterpret_cast<Handle>(h);
}

void Close(Handle handle) {
    CloseHandle(ToWin(handle));
}

long long Read(Handle handle, void* data, size_t count) {
    if (Refused(Call::Read, count))
        return -1;
    size_t done = 0;
    while (done < count) {
        DWORD chunk = static_cast<DWORD>(count - done < MAX_CHUNK ? count - done : MAX_CHUNK);
        DWORD got = 0;
        if (!ReadFile(ToWin(handle), static_cast<char*>(data) + done, chunk, &got, nullptr))
            return done ? static_cast<long long>(done) : -1;
        done += got;
        if (got < chunk)
            break;
    }
    return static_cast<long long>(done);
}

long long Write(Handle handle, const void* data, size_t count) {
    if (Refused(Call::Write, count))
        return -1;
    size_t done = 0;
    while (done < count) {
        DWORD chunk = static_cast<DWORD>(count - done < MAX_CHUNK ? count - done : MAX_CHUNK);
        DWORD put = 0;
        if (!WriteFile(ToWin(handle), static_cast<const char*>(data) + done, chunk, &put, nullptr))
            return done ? static_cast<long long>(done) : -1;
        done += put;
        if (put < chunk)
            break;
    }
    return static_cast<long long>(done);
}

long long Seek(Handle handle, long long offset, Origin origin) {
    if (Refused(Call::Seek))
        return -1;
    DWORD method = origin == Origin::Begin     ? FILE_BEGIN
                   : origin == Origin::Current ? FILE_CURRENT
                                               : FILE_END;
    LARGE_INTEGER distance, result;
    distance.QuadPart = offset;
    if (!SetFilePointerEx(ToWin(handle), distance, &result, method))
        return -1;
    return result.QuadPart;
}

bool Truncate(Handle handle) {
    return !Refused(Call::Truncate) && Seek(handle, 0, Origin::Begin) == 0 &&
           SetEndOfFile(ToWin(handle));
}

bool SameFile(Handle a, Handle b) {
    BY_HANDLE_FILE_INFORMATION ia, ib;
    if (!GetFileInformationByHandle(ToWin(a), &ia) || !GetFileInformationByHandle(ToWin(b), &ib))
        return false;
    return ia.dwVolumeSerialNumber == ib.dwVolumeSerialNumber &&
           ia.nFileIndexHigh == ib.nFileIndexHigh && ia.nFileIndexLow == ib.nFileIndexLow;
}

bool Rename(const wchar_t* from, const wchar_t* to, bool replace) {
    return !Refused(Call::Rename) &&
           MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED | (replace ? MOVEFILE_REPLACE_EXISTING : 0));
}

bool Remove(const wchar_t* name) {
    return !Refused(Call::Remove) && DeleteFileW(name);
}

bool Sync(Handle handle) {
    return !Refused(Call::Sync) && FlushFileBuffers(ToWin(handle));
}

} // namespace FileOs
