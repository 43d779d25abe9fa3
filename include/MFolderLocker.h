#pragma once
/// @file
/// MFolderLocker, a folder claimed by one process (Windows only).
#ifdef _WIN32
#include "CString.h"
#include "KelBaseExport.h"
#include "KelHandles.h"

/// Claims a folder for one process by holding the file "__fold__.lock" in it open
/// without sharing; a second claimant, in this process or another, cannot open it. The file is
/// never deleted. Results are Win32 codes (0: locked), also left as the thread's last error.
class KELBASE_API MFolderLocker {
public:
    /// Holds no lock.
    MFolderLocker();
    /// Locks `folder` when it is not null; the result is not kept.
    explicit MFolderLocker(const wchar_t* folder);
    /// Closes the lock file when one is held.
    ~MFolderLocker();
    MFolderLocker(const MFolderLocker&) = delete;
    MFolderLocker& operator=(const MFolderLocker&) = delete;

    /// While a lock is held the folder must be absolute ("X:\..." or "\\..."), else 87; the same
    /// folder again gives 0 at once, another one releases the held lock first. A null folder
    /// gives 87. A lock violation (33) is retried every 300 ms for about 3 s; any other failure,
    /// a sharing violation (32: another holder) included, is returned at once.
    unsigned long Lock(const wchar_t* folder);
    /// 0, or the code of a failing close (never 0).
    unsigned long Unlock();
    /// Whether a lock is held.
    bool IsLocked() const { return m_handle != nullptr; }

private:
    HANDLE m_handle;
    CString m_lockPath;
};
#endif
