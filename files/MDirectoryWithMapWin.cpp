// The folder operations of the directory with a name map: the sub-folder of a name, created or
// deleted, with the map file kept in step.
#include <windows.h>

#include <algorithm>
#include <string>

#include "MDirectory.h"
#include "MDirectoryWithMap.h"
#include "MFileName.h"
#include "MFileUtility.h"

namespace {

// Longer names are mapped, so that nested mapped folders stay well inside the path limit.
const std::size_t kLongestUnmappedName = 64;
const std::size_t kMappedStemLength = 8;

// Names the system takes for devices in every folder, with or without an extension.
bool IsDeviceName(const std::wstring& name) {
    const std::wstring stem = name.substr(0, name.find(L'.'));
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL"})
        if (_wcsicmp(stem.c_str(), device) == 0)
            return true;
    return stem.size() == 4 &&
           (_wcsnicmp(stem.c_str(), L"COM", 3) == 0 || _wcsnicmp(stem.c_str(), L"LPT", 3) == 0) &&
           stem[3] >= L'1' && stem[3] <= L'9';
}

bool IsOddCharacter(wchar_t c) {
    return c < 0x20 || c == L' ' || c == L'.';
}

// Whether the system keeps `name` as a folder name exactly as given.
bool StandsAsItIs(const std::wstring& name) {
    std::wstring fixed = name;
    return name.size() <= kLongestUnmappedName && !MFileUtility::FixFileName(fixed) &&
           !IsOddCharacter(name.back()) &&
           std::none_of(name.begin(), name.end(), [](wchar_t c) { return c < 0x20; }) &&
           !IsDeviceName(name);
}

std::wstring MappedStem(const std::wstring& name) {
    std::wstring stem = name.substr(0, kMappedStemLength);
    MFileUtility::FixFileName(stem);
    std::replace_if(stem.begin(), stem.end(), IsOddCharacter, L'_');
    return stem;
}

} // namespace

unsigned long MDirectoryWithMap::CheckCreateFolder(CString& folder, const wchar_t* name,
                                                   bool create) {
    if (!name || !*name)
        return ERROR_INVALID_NAME;
    AssurePath(folder);
    if (const unsigned long error = Read(folder, READ_SCAN_FOLDER))
        return error;
    CString diskName;
    if (!Name2MappedName(name, &diskName)) {
        diskName = name;
        if (!StandsAsItIs(name) || MappedName2Name(name, nullptr) ||
            diskName.CompareNoCase(mg_map_file_name_default) == 0) {
            const std::wstring stem = MappedStem(name);
            for (unsigned int number = 1;; ++number) {
                diskName = (stem + L"~" + std::to_wstring(number)).c_str();
                if (!MappedName2Name(diskName, nullptr) && GetNameIndex(diskName) == NO_INDEX)
                    break;
            }
            m_map.SetAt(name, diskName);
            if (GetNameIndex(name) == NO_INDEX)
                m_names.push_back({name, NAME_IS_FOLDER | NAME_IS_MAPPED});
            if (const unsigned long error = WriteMapFile(folder))
                return error;
        }
    }
    const CString target = folder + diskName;
    folder = target;
    AssurePath(folder);
    if (!create)
        return 0;
    const DWORD attributes = GetFileAttributesW(target);
    if (attributes != INVALID_FILE_ATTRIBUTES)
        return (attributes & FILE_ATTRIBUTE_DIRECTORY) ? 0 : ERROR_ALREADY_EXISTS;
    return CreateDirectoryW(target, nullptr) ? 0 : GetLastError();
}

unsigned long MDirectoryWithMap::DeleteFolder(CString& folder, const wchar_t* name, bool ask,
                                              IDirectoryRemoveAsker* asker) {
    if (!name || !*name)
        return ERROR_INVALID_NAME;
    AssurePath(folder);
    const CString parent = folder;
    if (const unsigned long error = Read(parent, READ_SCAN_FOLDER))
        return error;
    CString diskName;
    const bool mapped = Name2MappedName(name, &diskName);
    if (!mapped)
        diskName = name;
    const CString target = parent + diskName;
    folder = target;
    AssurePath(folder);
    const DWORD attributes = GetFileAttributesW(target);
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return ERROR_PATH_NOT_FOUND;
    if (ask && asker && !asker->AskRemove(name, target))
        return ERROR_CANCELLED;
    while (!MFileName(target).REMOVE()) {
        const unsigned long error = GetLastError();
        if (!asker || !asker->AskRetry(target, error))
            return error;
    }
    RemoveName(name);
    return mapped ? WriteMapFile(parent) : 0;
}
