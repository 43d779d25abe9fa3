#include "MFolderLocker.h"

#include <windows.h>

#include "KelResource.h"
#include "MDirectory.h"

namespace {

const DWORD kRetryMilliseconds = 300;
const DWORD kRetryForMilliseconds = 3000;

// "X:\" or "X:/" in front, or two equal separators.
bool IsCheckedFolder(const wchar_t* folder) {
    return folder[0] && ((folder[1] == L':' && (folder[2] == L'\\' || folder[2] == L'/')) ||
                         ((folder[0] == L'\\' || folder[0] == L'/') && folder[1] == folder[0]));
}

} // namespace

MFolderLocker::MFolderLocker() : m_handle(nullptr) {}

MFolderLocker::MFolderLocker(const wchar_t* folder) : m_handle(nullptr) {
    if (folder)
        Lock(folder);
}

MFolderLocker::~MFolderLocker() {
    if (m_handle && !CloseHandle(m_handle) && GetLastError() == 0)
        SetLastError(1);
}

unsigned long MFolderLocker::Lock(const wchar_t* folder) {
    if (!folder || (IsLocked() && !IsCheckedFolder(folder))) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return ERROR_INVALID_PARAMETER;
    }
    CString lockPath = folder;
    AssurePathAppend(lockPath, L"__fold__.lock");
    if (IsLocked()) {
        if (lockPath.CompareNoCase(m_lockPath) == 0)
            return 0;
        Unlock();
    }
    const DWORD start = GetTickCount();
    for (;;) {
        const HANDLE handle = CreateFileW(lockPath, GENERIC_READ, 0, nullptr, OPEN_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            m_handle = handle;
            m_lockPath = lockPath;
            return 0;
        }
        const unsigned long error = KelGetLastError();
        if (error != ERROR_LOCK_VIOLATION)
            return error;
        Sleep(kRetryMilliseconds);
        // Unsigned, the difference is the time passed even across the tick count's wrap.
        if (GetTickCount() - start > kRetryForMilliseconds)
            return error;
    }
}

unsigned long MFolderLocker::Unlock() {
    if (!m_handle)
        return 0;
    const bool closed = CloseHandle(m_handle) != FALSE;
    m_handle = nullptr;
    return closed ? 0 : KelGetLastError();
}
