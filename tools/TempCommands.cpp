// temp list|clean and lock: the temporary-folder cleaner and folder locks, to watch them work
// and to try them from another program.
#include "Keltool.h"

#include <conio.h>

#include <set>

namespace Keltool {
namespace {

// The folders of the temporary root whose names begin with `entry`, each with whether a live
// process holds it locked.
std::vector<std::pair<std::wstring, bool>> RootFolders(const std::wstring& root,
                                                       const std::wstring& entry) {
    std::vector<std::pair<std::wstring, bool>> folders;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((root + entry + L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return folders;
    do {
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            MFolderLocker probe;
            folders.emplace_back(root + found.cFileName,
                                 probe.Lock((root + found.cFileName).c_str()) != 0);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return folders;
}

// The cleaner's root: "TMP" (else the system's temporary folder), ending with a backslash.
std::wstring TemporaryRoot() {
    const wchar_t* tmp = _wgetenv(L"TMP");
    CString root = tmp && *tmp ? tmp : MDirectory::GetTemporary().c_str();
    AssurePath(root);
    return root.GetString();
}

int Temp(const Arguments& words) {
    if (words.size() != 2 || (words[0] != L"list" && words[0] != L"clean"))
        return UsageError(L"temp", L"use temp list ENTRY, or temp clean ENTRY");
    const std::wstring root = TemporaryRoot();
    const auto before = RootFolders(root, words[1]);
    if (words[0] == L"list") {
        for (const auto& [folder, inUse] : before)
            Print(folder + (inUse ? L"  (in use)\n" : L"  (left over)\n"));
        return Success;
    }
    // Init removes what no live process holds; Finish removes the cleaner's own folder.
    MTempCleaner cleaner(words[1].c_str());
    cleaner.Init();
    if (!cleaner.IsInitialised())
        return Fail(L"no folder can be made in the temporary folder \"" + root + L"\"");
    cleaner.Finish();
    std::set<std::wstring> after;
    for (const auto& [folder, inUse] : RootFolders(root, words[1]))
        after.insert(folder);
    std::size_t removed = 0;
    for (const auto& [folder, inUse] : before) {
        removed += after.count(folder) ? 0 : 1;
        Print((after.count(folder) ? L"left: " : L"removed: ") + folder + L"\n");
    }
    Print(std::to_wstring(removed) + L" removed, " + std::to_wstring(before.size() - removed) +
          L" left\n");
    return Success;
}

int Lock(const Arguments& arguments) {
    const Parsed parsed = SplitOptions(arguments);
    long seconds = -1;
    for (const std::wstring& option : parsed.options) {
        if (option.compare(0, 10, L"--seconds=") != 0)
            return UnknownOption(L"lock", option);
        seconds = std::wcstol(option.c_str() + 10, nullptr, 10);
    }
    if (parsed.operands.size() != 1)
        return UsageError(L"lock", L"use lock FOLDER");
    MFolderLocker locker;
    const unsigned long code = locker.Lock(parsed.operands[0].c_str());
    if (code != 0)
        return FailWithCode(L"cannot lock \"" + parsed.operands[0] + L"\"", code);
    Print(L"locked " + parsed.operands[0] + L"\n");
    std::fflush(stdout);
    if (seconds >= 0)
        Sleep(static_cast<DWORD>(seconds) * 1000);
    else
        _getwch();
    return Success;
}

} // namespace

KELTOOL_COMMAND(temp, L"temp", L"temp list ENTRY | temp clean ENTRY",
                L"  list ENTRY    the folders of the temporary root that belong to ENTRY, each\n"
                L"                in use (locked by a live process) or left over.\n"
                L"  clean ENTRY   a cleaner's run: removes what dead processes left and names\n"
                L"                what live ones still use.\n",
                Temp);
KELTOOL_COMMAND(lock, L"lock", L"lock [--seconds=N] FOLDER",
                L"  holds FOLDER's lock file until a key is pressed (or for N seconds), so\n"
                L"  that other programs can be tried against the lock.\n",
                Lock, OwnOptions);

} // namespace Keltool
