// A program of its own for the cleaner tests: "hold ENTRY" keeps a cleaner's folder, with a
// file in it, until the process is killed; "stress ENTRY ROUNDS" makes and removes a folder
// per round and prints how often its own file or folder went missing while it lived.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "MTempCleaner.h"
#include "StdBase.h"

namespace {

bool WriteMarker(const CString& folder) {
    const HANDLE file = CreateFileW(folder + L"\\marker.txt", GENERIC_WRITE, 0, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    WriteFile(file, "alive", 5, &written, nullptr);
    return CloseHandle(file) && written == 5;
}

bool HasMarker(const CString& folder) {
    return GetFileAttributesW(folder + L"\\marker.txt") != INVALID_FILE_ATTRIBUTES;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "hold") == 0) {
        MTempCleaner cleaner(StdBase::ConvertAnsiToUnicode(argv[2]).c_str());
        cleaner.Init();
        if (!cleaner.IsInitialised() || !WriteMarker(cleaner.GetCurPath()))
            return 1;
        std::printf("%ls\n", cleaner.GetCurPath().GetString());
        std::fflush(stdout);
        Sleep(INFINITE);
    }
    if (argc == 4 && std::strcmp(argv[1], "stress") == 0) {
        const int rounds = std::atoi(argv[3]);
        int lost = 0;
        for (int round = 0; round < rounds; ++round) {
            MTempCleaner cleaner(StdBase::ConvertAnsiToUnicode(argv[2]).c_str());
            cleaner.Init();
            if (!cleaner.IsInitialised() || !WriteMarker(cleaner.GetCurPath())) {
                ++lost;
                continue;
            }
            Sleep(round % 3);
            lost += HasMarker(cleaner.GetCurPath()) ? 0 : 1;
        }
        std::printf("lost %d of %d\n", lost, rounds);
        return 0;
    }
    return 2;
}
