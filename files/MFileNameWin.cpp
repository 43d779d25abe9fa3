// The file-system side of MFileName: queries and operations on the named path, and the names
// that depend on what exists.
#include "MFileName.h"

#include <windows.h>
#include <shellapi.h>

#include <io.h>

#include "MFile.h"

namespace {

// Process-wide counter of SET_TEMP_NAME; unguarded, like the rest of the library's
// process-wide state that callers must not use from several threads at once.
unsigned short g_tempNameCounter = 1;

bool IsDirectoryLink(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

bool RemoveTree(const std::wstring& path, DWORD attributes);

bool RemoveContents(const std::wstring& dir) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileExW((dir + L"\\*").c_str(), FindExInfoBasic, &entry,
                                           FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    bool removed = true;
    do {
        const std::wstring name = entry.cFileName;
        if (name != L"." && name != L"..")
            removed = RemoveTree(dir + L"\\" + name, entry.dwFileAttributes);
    } while (removed && FindNextFileW(search, &entry));
    FindClose(search);
    return removed;
}

// A junction or directory symbolic link is removed as it is; what it points to is never
// entered (the C++ runtime's remove_all does not know links on this platform, hence this walk).
bool RemoveTree(const std::wstring& path, DWORD attributes) {
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY))
        return DeleteFileW(path.c_str()) != FALSE;
    if (!IsDirectoryLink(attributes) && !RemoveContents(path))
        return false;
    return RemoveDirectoryW(path.c_str()) != FALSE;
}

bool RunShellOperation(UINT operation, const std::wstring& from, const std::wstring& to,
                       bool showUi) {
    // The shell takes lists of names, each list ending with an empty name.
    const std::wstring fromList = from + L'\0';
    const std::wstring toList = to + L'\0';
    SHFILEOPSTRUCTW op = {};
    op.wFunc = operation;
    op.pFrom = fromList.c_str();
    op.pTo = to.empty() ? nullptr : toList.c_str();
    op.fFlags = showUi ? 0 : FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_NOCONFIRMMKDIR;
    return SHFileOperationW(&op) == 0 && !op.fAnyOperationsAborted;
}

// Calls a query of the GetTempPathW shape, which reports the size it needs when the buffer
// is too small; empty on failure.
std::wstring QuerySystemPath(DWORD(WINAPI* query)(DWORD, LPWSTR)) {
    std::wstring text(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = query(static_cast<DWORD>(text.size()), &text[0]);
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(length);
    }
}

bool SetFolder(MFileName& name, DWORD(WINAPI* query)(DWORD, LPWSTR)) {
    const std::wstring path = QuerySystemPath(query);
    if (path.empty())
        return false;
    name.SET(path.c_str(), true);
    return true;
}

// "~kel<n>" without a prefix (an empty one counts as none); otherwise the prefix, cut so that
// the name fits beside the folder and extension, and the number, zero-padded to width when
// width is 1 to 127.
std::wstring TempFileName(const wchar_t* prefix, unsigned short counter, int width,
                          std::size_t usedByDirAndExt) {
    std::wstring number = std::to_wstring(counter);
    if (!prefix || !*prefix)
        return L"~kel" + number;
    // The prefix's room counts no digits for a counter of 0.
    const long long digits = width != 0     ? width
                             : counter == 0 ? 0LL
                                            : static_cast<long long>(number.size());
    const long long room = 256 - static_cast<long long>(usedByDirAndExt) - digits;
    if (width >= 1 && width <= 127 && number.size() < static_cast<std::size_t>(width))
        number.insert(0, width - number.size(), L'0');
    std::wstring name(
        std::wstring_view(prefix).substr(0, static_cast<std::size_t>(std::max(0LL, room))));
    name += number;
    // The name is formed in a buffer of 256 characters, its terminator included.
    name.resize(std::min<std::size_t>(name.size(), 255));
    return name;
}

} // namespace

bool MFileName::DOES_EXIST() const {
    return GetFileAttributesW(GET()) != INVALID_FILE_ATTRIBUTES;
}

bool MFileName::IS_WRITABLE() const {
    return _waccess(GET(), 2) == 0;
}

bool MFileName::IS_UPDATABLE() const {
    MFile file;
    const bool opened = file.OPEN_UPDATE(GET());
    file.CLOSE();
    return opened;
}

long long MFileName::FILE_SIZE() const {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(GET(), GetFileExInfoStandard, &data))
        return -1;
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        // What the system reports on opening a directory as a file.
        SetLastError(ERROR_ACCESS_DENIED);
        return -1;
    }
    return static_cast<long long>((static_cast<unsigned long long>(data.nFileSizeHigh) << 32) |
                                  data.nFileSizeLow);
}

bool MFileName::COPY_FILE(const MFileName& target) const {
    return MFile::COPY(GET(), target.GET(), true);
}

bool MFileName::REMOVE() const {
    const DWORD attributes = GetFileAttributesW(GET());
    return attributes != INVALID_FILE_ATTRIBUTES && RemoveTree(GET(), attributes);
}

bool MFileName::CREATE_DIRECTORY() const {
    if (CreateDirectoryW(GET(), nullptr))
        return true;
    const DWORD attributes = GetFileAttributesW(GET());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool MFileName::REMOVE_SHELL(bool showUi) const {
    // An empty list would make the shell act on nothing the caller named.
    return !IS_EMPTY() && RunShellOperation(FO_DELETE, GET(), std::wstring(), showUi);
}

bool MFileName::RENAME_SHELL(const MFileName& target, bool showUi) const {
    return !IS_EMPTY() && !target.IS_EMPTY() &&
           RunShellOperation(FO_RENAME, GET(), target.GET(), showUi);
}

bool MFileName::FILL_WITH_MODULE_PATH(HINSTANCE module) {
    // The call does not say how long the path is: grow the buffer until the path fits.
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, &path[0], static_cast<DWORD>(path.size()));
        if (length == 0)
            return false;
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);
    }
    SET(path.c_str(), false);
    return true;
}

bool MFileName::FILL_WITH_WORKING_PATH() {
    return SetFolder(*this, GetCurrentDirectoryW);
}

bool MFileName::FILL_WITH_TEMPORARY_PATH() {
    return SetFolder(*this, GetTempPathW);
}

unsigned short MFileName::SET_TEMP_NAME(const wchar_t* dir, const wchar_t* prefix,
                                        const wchar_t* ext, unsigned short start, int width) {
    const std::wstring folder = dir && *dir ? dir : QuerySystemPath(GetTempPathW);
    std::wstring drive, directory, file, extension;
    POSITION_PATH_PARTS(folder, drive, directory, file, extension, true);
    SET_DRIVE_PART(drive.c_str());
    SET_DIR_PART(directory.c_str(), 260);
    SET_EXT_PART(ext ? ext : L".tmp", 256);

    const bool shared = start == 0xFFFF;
    unsigned short counter = shared ? g_tempNameCounter : start;
    // The attempts stop after the counter's whole range, the last name standing even though it
    // exists, so that a folder holding every name, or a prefix that a separator cuts before the
    // number, cannot make this loop forever.
    for (unsigned attempt = 1;; ++attempt) {
        SET_FILE_PART(TempFileName(prefix, counter, width, m_dir.size() + m_ext.size()).c_str());
        if (!DOES_EXIST() || attempt == 0x10000)
            break;
        ++counter;
    }
    const unsigned short next = static_cast<unsigned short>(counter + 1);
    if (shared)
        g_tempNameCounter = next;
    return next;
}

bool MFileName::ADD_UNIQUE_INDEX(unsigned char first) {
    const std::wstring base = m_file;
    for (unsigned index = first; index <= 255; ++index) {
        m_file = base + L"_" + std::to_wstring(index);
        if (!DOES_EXIST())
            return true;
    }
    m_file = base;
    return false;
}
