#include "CFile.h"

#include <algorithm>

#include <windows.h>

IMPLEMENT_DYNAMIC(CFile, CObject)

const HANDLE CFile::hFileNull = INVALID_HANDLE_VALUE;

namespace {

LONG LastOsError() {
    return static_cast<LONG>(::GetLastError());
}

DWORD AccessOf(UINT flags) {
    switch (flags & 3) {
    case CFile::modeWrite:
        return GENERIC_WRITE;
    case CFile::modeReadWrite:
        return GENERIC_READ | GENERIC_WRITE;
    default:
        return GENERIC_READ;
    }
}

// shareCompat is taken as shareExclusive, as the framework does on Win32.
DWORD ShareOf(UINT flags) {
    switch (flags & 0x70) {
    case CFile::shareDenyWrite:
        return FILE_SHARE_READ;
    case CFile::shareDenyRead:
        return FILE_SHARE_WRITE;
    case CFile::shareDenyNone:
        return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default:
        return 0;
    }
}

DWORD CreationOf(UINT flags) {
    if ((flags & CFile::modeCreate) == 0) {
        return OPEN_EXISTING;
    }
    return (flags & CFile::modeNoTruncate) != 0 ? OPEN_ALWAYS : CREATE_ALWAYS;
}

CString FullPathOf(LPCTSTR name) {
    const DWORD needed = ::GetFullPathNameW(name, 0, nullptr, nullptr);
    if (needed == 0) {
        return CString(name);
    }
    CString path;
    const DWORD length =
        ::GetFullPathNameW(name, needed, path.GetBuffer(static_cast<int>(needed)), nullptr);
    path.ReleaseBuffer();
    return length == 0 || length >= needed ? CString(name) : path;
}

} // namespace

CFile::CFile() : m_hFile(hFileNull) {}

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags) : m_hFile(hFileNull) {
    CFileException error;
    if (!Open(lpszFileName, nOpenFlags, &error)) {
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    }
}

CFile::~CFile() {
    Abort();
}

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError) {
    Abort();
    if (lpszFileName == nullptr || *lpszFileName == 0) {
        if (pError != nullptr) {
            pError->m_cause = CFileException::badPath;
            pError->m_lOsError = ERROR_INVALID_NAME;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    // Handles are inheritable unless modeNoInherit says otherwise, as in the framework.
    SECURITY_ATTRIBUTES security = {sizeof(security), nullptr,
                                    (nOpenFlags & modeNoInherit) == 0 ? TRUE : FALSE};
    const HANDLE handle =
        ::CreateFileW(lpszFileName, AccessOf(nOpenFlags), ShareOf(nOpenFlags), &security,
                      CreationOf(nOpenFlags), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        if (pError != nullptr) {
            pError->m_lOsError = LastOsError();
            pError->m_cause = CFileException::OsErrorToException(pError->m_lOsError);
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    m_hFile = handle;
    m_strFileName = FullPathOf(lpszFileName);
    return TRUE;
}

UINT CFile::Read(void* lpBuf, UINT nCount) {
    if (nCount == 0) {
        return 0;
    }
    DWORD read = 0;
    if (!::ReadFile(m_hFile, lpBuf, nCount, &read, nullptr)) {
        CFileException::ThrowOsError(LastOsError(), m_strFileName);
    }
    return read;
}

void CFile::Write(const void* lpBuf, UINT nCount) {
    if (nCount == 0) {
        return;
    }
    DWORD written = 0;
    if (!::WriteFile(m_hFile, lpBuf, nCount, &written, nullptr)) {
        CFileException::ThrowOsError(LastOsError(), m_strFileName);
    }
    if (written != nCount) {
        AfxThrowFileException(CFileException::diskFull, -1, m_strFileName);
    }
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom) {
    LARGE_INTEGER distance;
    distance.QuadPart = lOff;
    LARGE_INTEGER position;
    if (!::SetFilePointerEx(m_hFile, distance, &position, nFrom)) {
        CFileException::ThrowOsError(LastOsError(), m_strFileName);
    }
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::GetLength() const {
    LARGE_INTEGER size;
    if (!::GetFileSizeEx(m_hFile, &size)) {
        CFileException::ThrowOsError(LastOsError(), m_strFileName);
    }
    return static_cast<ULONGLONG>(size.QuadPart);
}

ULONGLONG CFile::GetPosition() const {
    LARGE_INTEGER zero;
    zero.QuadPart = 0;
    LARGE_INTEGER position;
    if (!::SetFilePointerEx(m_hFile, zero, &position, FILE_CURRENT)) {
        CFileException::ThrowOsError(LastOsError(), m_strFileName);
    }
    return static_cast<ULONGLONG>(position.QuadPart);
}

void CFile::Close() {
    const bool failed = m_hFile != hFileNull && !::CloseHandle(m_hFile);
    const LONG osError = failed ? LastOsError() : 0;
    m_hFile = hFileNull;
    const CString name = m_strFileName;
    m_strFileName.Empty();
    if (failed) {
        CFileException::ThrowOsError(osError, name);
    }
}

void CFile::Abort() {
    if (m_hFile != hFileNull) {
        ::CloseHandle(m_hFile);
        m_hFile = hFileNull;
    }
    m_strFileName.Empty();
}

CString CFile::GetFileName() const {
    const int cut = std::max({m_strFileName.ReverseFind(L'\\'), m_strFileName.ReverseFind(L'/'),
                              m_strFileName.ReverseFind(L':')});
    return m_strFileName.Mid(cut + 1);
}
