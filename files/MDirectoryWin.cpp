// The folders that the system knows, directory checks and copies, and folder chains.
#include "MDirectory.h"

#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <io.h>

#include <cwchar>

#include "MString.h"

namespace {

bool IsSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

// Whether a query of the GetTempPathW kind filled a buffer of 260 characters (it reports the
// size it needs when the buffer is too small, 0 on failure).
bool Filled(DWORD length) {
    return length != 0 && length < MAX_PATH;
}

// A path from a call that fills a buffer of 260 characters; empty when the call fails.
template <class Call> std::wstring FromPathBuffer(Call call) {
    wchar_t buffer[MAX_PATH + 1] = {};
    return call(buffer) ? std::wstring(buffer) : std::wstring();
}

// The shell wants lists of names, each list ending with an empty name.
std::wstring ShellList(const CString& path) {
    return std::wstring(path.GetString(), path.GetLength()) + L'\0';
}

// Where the part of the path that mkdirchain may create begins: after "\\?\" or "\\.\", and
// after the server and the share of a network path, which are no folders to create.
std::size_t CreatableStart(const std::wstring& path) {
    if (path.size() < 2 || !IsSeparator(path[0]) || !IsSeparator(path[1]))
        return 0;
    if (path.size() >= 4 && (path[2] == L'?' || path[2] == L'.') && IsSeparator(path[3]))
        return 4;
    const std::size_t server = path.find_first_of(L"\\/", 2);
    const std::size_t share =
        server == std::wstring::npos ? server : path.find_first_of(L"\\/", server + 1);
    return share == std::wstring::npos ? path.size() : share;
}

} // namespace

void MDirectory::GET_EXECUTABLE_DIRECTORY(MFileName& directory) {
    directory.FILL_WITH_MODULE_PATH(nullptr);
    directory.SET_FILE_EXT_PARTS(nullptr, 256, 256);
}

void MDirectory::GET_WORKING_DIRECTORY(MFileName& directory) {
    MFileName settings;
    GET_EXECUTABLE_DIRECTORY(settings);
    settings.SET_FILE_EXT_PARTS(L"kelmora.ini");
    MString value;
    if (value.LOAD_INI_STRING(settings.GET(), L"Orvano", L"WorkingDirectory"))
        directory.SET(value.C_STR(), true);
    else if (std::wcscmp(directory.GET(), mg_default_working_directory.GET()) != 0)
        _CopyWithMode(directory, mg_default_working_directory);
}

void MDirectory::GET_PROJECT_DIRECTORY(MFileName& directory) {
    if (mg_project_directory.IS_EMPTY())
        GET_WORKING_DIRECTORY(directory);
    else
        _CopyWithMode(directory, mg_project_directory);
}

std::wstring MDirectory::GetTemporary() {
    return FromPathBuffer([](wchar_t* out) { return Filled(GetTempPathW(MAX_PATH, out)); });
}

std::wstring MDirectory::GetTemporaryFileName(const wchar_t* prefix) {
    const std::wstring folder = GetTemporary();
    return FromPathBuffer([&](wchar_t* out) {
        return !folder.empty() && GetTempFileNameW(folder.c_str(), prefix ? prefix : L"", 0, out);
    });
}

std::wstring MDirectory::GetSystemDrive() {
    const std::wstring windows =
        FromPathBuffer([](wchar_t* out) { return Filled(GetWindowsDirectoryW(out, MAX_PATH)); });
    return windows.size() >= 2 && windows[1] == L':' ? windows.substr(0, 2) : std::wstring();
}

std::wstring MDirectory::GetStandard(int folder, bool create) {
    return FromPathBuffer([=](wchar_t* out) {
        return GET_SPECIAL_FOLDER_PATH(out, nullptr, folder | (create ? CSIDL_FLAG_CREATE : 0));
    });
}

std::wstring MDirectory::GetApplicationData(bool common) {
    return GetStandard(common ? CSIDL_COMMON_APPDATA : CSIDL_APPDATA, false);
}

std::wstring MDirectory::GetDocuments(bool common) {
    return GetStandard(common ? CSIDL_COMMON_DOCUMENTS : CSIDL_PERSONAL, false);
}

std::wstring MDirectory::GetProgramFiles(bool common) {
    return GetStandard(common ? CSIDL_PROGRAM_FILES_COMMON : CSIDL_PROGRAM_FILES, false);
}

std::wstring MDirectory::GetPrograms(bool common) {
    return GetStandard(common ? CSIDL_COMMON_PROGRAMS : CSIDL_PROGRAMS, false);
}

std::wstring MDirectory::GetCurrent() {
    return FromPathBuffer([](wchar_t* out) { return Filled(GetCurrentDirectoryW(MAX_PATH, out)); });
}

std::wstring MDirectory::GetApplication() {
    MFileName executable;
    return executable.FILL_WITH_MODULE_PATH(nullptr) ? executable.GET_DRIVE_DIR_PARTS(true)
                                                     : std::wstring();
}

bool MDirectory::GET_SPECIAL_FOLDER_PATH(wchar_t* out, HWND owner, int folder) {
    return out && SUCCEEDED(SHGetFolderPathW(owner, folder, nullptr, 0, out));
}

bool MDirectory::DirectoryHasAccess(const CString& path, unsigned long access) {
    const HANDLE handle = CreateFileW(path, access, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError() != ERROR_ACCESS_DENIED;
    CloseHandle(handle);
    return true;
}

bool MDirectory::IsDirectoryEmpty(const CString& directory) {
    if (!PathFileExistsW(directory))
        return true;
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(directory + L"\\*.*", &entry);
    if (search == INVALID_HANDLE_VALUE)
        return true;
    bool empty = true;
    while (empty && FindNextFileW(search, &entry))
        empty = CString(entry.cFileName).CompareNoCase(L".") == 0 ||
                CString(entry.cFileName).CompareNoCase(L"..") == 0;
    FindClose(search);
    return empty;
}

bool MDirectory::CopyDirectoryContents(const CString& from, const CString& to, bool showProgress) {
    SHCreateDirectoryExW(nullptr, to, nullptr);
    // Double-null-terminated, as long as the paths are (not cut to 260 characters).
    const std::wstring source = ShellList(from + L"\\*.*");
    const std::wstring target = ShellList(to);
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = FO_COPY;
    operation.pFrom = source.c_str();
    operation.pTo = target.c_str();
    operation.fFlags = FOF_NOCONFIRMATION | FOF_NOCONFIRMMKDIR | FOF_NOERRORUI |
                       FOF_NO_CONNECTED_ELEMENTS | (showProgress ? 0 : FOF_SILENT);
    return SHFileOperationW(&operation) == 0;
}

bool mkdirchain(const wchar_t* path) {
    SetLastError(ERROR_INVALID_PARAMETER);
    if (!path || !*path)
        return false;
    std::wstring work(path);
    const std::size_t start = CreatableStart(work);
    for (std::size_t i = start + 1; i <= work.size(); ++i) {
        if (i < work.size() && !IsSeparator(work[i]))
            continue;
        // Nothing ends here that could be made: a drive, "." or "..", or a doubled separator.
        const wchar_t before = work[i - 1];
        if (before == L'.' || before == L':' || IsSeparator(before))
            continue;
        const wchar_t cut = i < work.size() ? work[i] : L'\0';
        work[i] = L'\0';
        if (_waccess(work.c_str(), 0) != 0 && !CreateDirectoryW(work.c_str(), nullptr))
            return false;
        if (cut)
            work[i] = L'\\';
    }
    return true;
}
