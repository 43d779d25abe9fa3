#include "MTempCleaner.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <cwchar>
#include <string>

#include "MDirectory.h"

namespace {

const unsigned kMaxNameAttempts = 1000;
const wchar_t kLockFileName[] = L"__fold__.lock";

CString SafeEntryName(const wchar_t* entryName) {
    // The characters that would cut a file part short go the way MAKE_SAFE sends the rest.
    std::wstring text = entryName ? entryName : L"";
    std::replace_if(
        text.begin(), text.end(), [](wchar_t c) { return std::wcschr(L"\\/:<>|", c) != nullptr; },
        L'_');
    MFileName name;
    name.SET_FILE_PART(text.c_str());
    name.MAKE_SAFE();
    return *name.GET_FILE_PART() ? name.GET_FILE_PART() : L"KelTemp";
}

CString Environment(const wchar_t* name) {
    const wchar_t* value = _wgetenv(name);
    return value ? value : L"";
}

// The run-time library's copy and the process's own block, which the system's temporary-path
// query and child processes read; an empty value removes the variable.
void SetEnvironment(const wchar_t* name, const CString& value) {
    _wputenv(CString(name) + L"=" + value);
    SetEnvironmentVariableW(name, value.IsEmpty() ? nullptr : value.GetString());
}

// "_HH_MM_SS_" of the local time.
std::wstring TimeOfDay() {
    const std::time_t now = std::time(nullptr);
    wchar_t text[32] = {};
    if (const std::tm* local = std::localtime(&now))
        std::wcsftime(text, 32, L"_%H_%M_%S_", local);
    return text;
}

long Operate(MTempCleaner::EPathOperation operation, const CString& path, const wchar_t* pattern);

// A folder that no process holds locked: the probe lock is held while the content goes, so
// that a process that is just claiming the folder cannot have its files taken; the lock file
// and the folder follow, and stay when anyone opened the lock file in between.
void DeleteFolder(const CString& folder) {
    MFolderLocker probe;
    if (probe.Lock(folder) != 0)
        return;
    Operate(MTempCleaner::PATH_DELETE, folder, L"*");
    probe.Unlock();
    CString lockFile = folder;
    AssurePathAppend(lockFile, kLockFileName);
    DeleteFileW(lockFile);
    RemoveDirectoryW(folder);
}

long Operate(MTempCleaner::EPathOperation operation, const CString& path, const wchar_t* pattern) {
    CString search = path;
    if (pattern)
        AssurePathAppend(search, pattern);
    WIN32_FIND_DATAW entry;
    const HANDLE found =
        FindFirstFileExW(search, FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr, 0);
    const bool deleting = operation == MTempCleaner::PATH_DELETE;
    if (found == INVALID_HANDLE_VALUE)
        // No match in a folder that exists is nothing to do; a folder that is not there, -1.
        return pattern && GetLastError() == ERROR_FILE_NOT_FOUND ? (deleting ? 1 : 0) : -1;
    long result = deleting ? 1 : 0;
    do {
        const CString name = entry.cFileName;
        if (name == L"." || name == L"..")
            continue;
        CString entryPath = path;
        if (pattern)
            AssurePathAppend(entryPath, name);
        const DWORD attributes = entry.dwFileAttributes;
        if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            if (deleting && (attributes & FILE_ATTRIBUTE_ARCHIVE) && !DeleteFileW(entryPath))
                --result;
        } else if (!deleting) {
            ++result;
        } else if (attributes & FILE_ATTRIBUTE_REPARSE_POINT) {
            RemoveDirectoryW(entryPath); // the link, never what it points to
        } else {
            DeleteFolder(entryPath);
        }
    } while (FindNextFileW(found, &entry));
    FindClose(found);
    return result;
}

} // namespace

MTempCleaner::MPauser::MPauser(MTempCleaner* cleaner) : m_cleaner(cleaner) {
    if (m_cleaner)
        m_cleaner->Pause();
}

MTempCleaner::MPauser::~MPauser() {
    if (m_cleaner)
        m_cleaner->Resume();
}

MTempCleaner::MTempCleaner(const wchar_t* entryName, const MFileName* fileName)
    : m_initialised(false), m_fileNameMode(false) {
    SetEntryName(entryName);
    SetFileName(fileName);
}

MTempCleaner::MTempCleaner(CString& entryName, const MFileName* fileName)
    : MTempCleaner(entryName.GetString(), fileName) {}

MTempCleaner::~MTempCleaner() {
    Finish();
}

void MTempCleaner::SetEntryName(const wchar_t* entryName) {
    m_entryName = SafeEntryName(entryName);
}

void MTempCleaner::SetEntryName(CString& entryName) {
    SetEntryName(entryName.GetString());
}

void MTempCleaner::SetFileName(const MFileName* fileName) {
    m_fileNameMode = fileName != nullptr;
    if (fileName)
        m_fileName = *fileName;
}

void MTempCleaner::Init() {
    if (m_initialised)
        return;
    m_oldPath = m_fileNameMode ? CString(m_fileName.GET()) : Environment(L"TMP");
    m_oldTemp = m_fileNameMode ? m_oldPath : Environment(L"TEMP");
    if (m_oldPath.IsEmpty())
        m_oldPath = MDirectory::GetTemporary().c_str();
    AssurePath(m_oldPath);
    for (unsigned attempt = 1;; ++attempt) {
        if (attempt > kMaxNameAttempts) {
            m_curPath.Empty();
            return;
        }
        m_curPath =
            m_oldPath + m_entryName + TimeOfDay().c_str() + std::to_wstring(attempt).c_str();
        // A folder that is there already may be a dead run's, with its files: not taken over.
        if (GetFileAttributesW(m_curPath) != INVALID_FILE_ATTRIBUTES)
            continue;
        mkdirchain(m_curPath);
        if (m_ownLock.Lock(m_curPath) == 0)
            break;
    }
    m_initialised = true;
    Resume();
    _DeletePath(m_oldPath, m_entryName + L"*");
}

void MTempCleaner::Finish() {
    if (!m_initialised)
        return;
    Pause();
    m_ownLock.Unlock();
    _DeletePath(m_curPath, nullptr);
    m_initialised = false;
}

long MTempCleaner::EnumerateRootTempFolders() const {
    return _DoOperationOnPath(PATH_COUNT, m_oldPath, m_entryName + L"*");
}

void MTempCleaner::Pause() {
    if (!m_initialised)
        return;
    _SetTmpPath(m_oldPath, true);
    _SetTmpPath(m_oldTemp, false);
}

void MTempCleaner::Resume() {
    if (!m_initialised)
        return;
    _SetTmpPath(m_curPath, true);
    _SetTmpPath(m_curPath, false);
}

void MTempCleaner::_SetTmpPath(CString& path, bool tmp) {
    // In file-name mode the one name stands for both variables.
    if (m_fileNameMode) {
        if (tmp)
            m_fileName.SET(path, true);
    } else
        SetEnvironment(tmp ? L"TMP" : L"TEMP", path);
}

long MTempCleaner::_DoOperationOnPath(EPathOperation operation, const wchar_t* path,
                                      const wchar_t* pattern) const {
    return m_initialised && path ? Operate(operation, path, pattern) : 0;
}

long MTempCleaner::_DeletePath(const wchar_t* path, const wchar_t* pattern) const {
    return _DoOperationOnPath(PATH_DELETE, path, pattern);
}
