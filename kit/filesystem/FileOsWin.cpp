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
} // namespace

Handle Open(const wchar_t* name, Mode mode) {
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
    return Seek(handle, 0, Origin::Begin) == 0 && SetEndOfFile(ToWin(handle));
}

bool SameFile(Handle a, Handle b) {
    BY_HANDLE_FILE_INFORMATION ia, ib;
    if (!GetFileInformationByHandle(ToWin(a), &ia) || !GetFileInformationByHandle(ToWin(b), &ib))
        return false;
    return ia.dwVolumeSerialNumber == ib.dwVolumeSerialNumber &&
           ia.nFileIndexHigh == ib.nFileIndexHigh && ia.nFileIndexLow == ib.nFileIndexLow;
}

} // namespace FileOs
