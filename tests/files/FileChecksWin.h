#pragma once
// What the Windows tests of the file classes ask of the file system, through the system itself.
#include <windows.h>

#include <filesystem>

inline bool Exists(const std::filesystem::path& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

inline bool IsFolder(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Polls until `done` holds, for at most 20 s.
template <class Condition> bool Eventually(Condition done) {
    for (int i = 0; i < 200 && !done(); ++i)
        Sleep(100);
    return done();
}
