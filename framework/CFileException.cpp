#include "CFileException.h"

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CFileException, CException)

void CException::Delete() {
    if (m_bAutoDelete) {
        delete this;
    }
}

CFileException::CFileException(int cause, LONG lOsError, LPCTSTR lpszArchiveName)
    : m_cause(cause), m_lOsError(lOsError), m_strFileName(lpszArchiveName) {}

namespace {

struct OsErrorCause {
    LONG osError;
    int cause;
};

// Win32 error codes by number, so that this table needs no Windows header.
const OsErrorCause kOsErrorCauses[] = {
    {0, CFileException::none},               // NO_ERROR
    {2, CFileException::fileNotFound},       // ERROR_FILE_NOT_FOUND
    {3, CFileException::badPath},            // ERROR_PATH_NOT_FOUND
    {4, CFileException::tooManyOpenFiles},   // ERROR_TOO_MANY_OPEN_FILES
    {5, CFileException::accessDenied},       // ERROR_ACCESS_DENIED
    {6, CFileException::fileNotFound},       // ERROR_INVALID_HANDLE
    {11, CFileException::invalidFile},       // ERROR_BAD_FORMAT
    {12, CFileException::accessDenied},      // ERROR_INVALID_ACCESS
    {15, CFileException::badPath},           // ERROR_INVALID_DRIVE
    {16, CFileException::removeCurrentDir},  // ERROR_CURRENT_DIRECTORY
    {17, CFileException::badPath},           // ERROR_NOT_SAME_DEVICE
    {18, CFileException::fileNotFound},      // ERROR_NO_MORE_FILES
    {19, CFileException::accessDenied},      // ERROR_WRITE_PROTECT
    {20, CFileException::hardIO},            // ERROR_BAD_UNIT
    {21, CFileException::hardIO},            // ERROR_NOT_READY
    {22, CFileException::hardIO},            // ERROR_BAD_COMMAND
    {23, CFileException::hardIO},            // ERROR_CRC
    {24, CFileException::badSeek},           // ERROR_BAD_LENGTH
    {25, CFileException::badSeek},           // ERROR_SEEK
    {26, CFileException::invalidFile},       // ERROR_NOT_DOS_DISK
    {27, CFileException::badSeek},           // ERROR_SECTOR_NOT_FOUND
    {29, CFileException::accessDenied},      // ERROR_WRITE_FAULT
    {30, CFileException::badSeek},           // ERROR_READ_FAULT
    {32, CFileException::sharingViolation},  // ERROR_SHARING_VIOLATION
    {33, CFileException::lockViolation},     // ERROR_LOCK_VIOLATION
    {34, CFileException::badPath},           // ERROR_WRONG_DISK
    {36, CFileException::tooManyOpenFiles},  // ERROR_SHARING_BUFFER_EXCEEDED
    {38, CFileException::endOfFile},         // ERROR_HANDLE_EOF
    {39, CFileException::diskFull},          // ERROR_HANDLE_DISK_FULL
    {52, CFileException::badPath},           // ERROR_DUP_NAME
    {53, CFileException::badPath},           // ERROR_BAD_NETPATH
    {54, CFileException::accessDenied},      // ERROR_NETWORK_BUSY
    {55, CFileException::badPath},           // ERROR_DEV_NOT_EXIST
    {57, CFileException::hardIO},            // ERROR_ADAP_HDW_ERR
    {58, CFileException::accessDenied},      // ERROR_BAD_NET_RESP
    {59, CFileException::hardIO},            // ERROR_UNEXP_NET_ERR
    {60, CFileException::invalidFile},       // ERROR_BAD_REM_ADAP
    {62, CFileException::directoryFull},     // ERROR_NO_SPOOL_SPACE
    {64, CFileException::accessDenied},      // ERROR_NETNAME_DELETED
    {65, CFileException::accessDenied},      // ERROR_NETWORK_ACCESS_DENIED
    {66, CFileException::invalidFile},       // ERROR_BAD_DEV_TYPE
    {67, CFileException::badPath},           // ERROR_BAD_NET_NAME
    {68, CFileException::tooManyOpenFiles},  // ERROR_TOO_MANY_NAMES
    {70, CFileException::badPath},           // ERROR_SHARING_PAUSED
    {71, CFileException::accessDenied},      // ERROR_REQ_NOT_ACCEP
    {80, CFileException::accessDenied},      // ERROR_FILE_EXISTS
    {82, CFileException::accessDenied},      // ERROR_CANNOT_MAKE
    {85, CFileException::badPath},           // ERROR_ALREADY_ASSIGNED
    {86, CFileException::accessDenied},      // ERROR_INVALID_PASSWORD
    {88, CFileException::hardIO},            // ERROR_NET_WRITE_FAULT
    {107, CFileException::fileNotFound},     // ERROR_DISK_CHANGE
    {108, CFileException::lockViolation},    // ERROR_DRIVE_LOCKED
    {111, CFileException::badPath},          // ERROR_BUFFER_OVERFLOW
    {112, CFileException::diskFull},         // ERROR_DISK_FULL
    {113, CFileException::tooManyOpenFiles}, // ERROR_NO_MORE_SEARCH_HANDLES
    {114, CFileException::invalidFile},      // ERROR_INVALID_TARGET_HANDLE
    {117, CFileException::hardIO},           // ERROR_INVALID_CATEGORY
    {123, CFileException::badPath},          // ERROR_INVALID_NAME
    {124, CFileException::badPath},          // ERROR_INVALID_LEVEL
    {125, CFileException::badPath},          // ERROR_NO_VOLUME_LABEL
    {131, CFileException::badSeek},          // ERROR_NEGATIVE_SEEK
    {132, CFileException::badSeek},          // ERROR_SEEK_ON_DEVICE
    {144, CFileException::badPath},          // ERROR_DIR_NOT_ROOT
    {145, CFileException::removeCurrentDir}, // ERROR_DIR_NOT_EMPTY
    {154, CFileException::badPath},          // ERROR_LABEL_TOO_LONG
    {161, CFileException::badPath},          // ERROR_BAD_PATHNAME
    {167, CFileException::lockViolation},    // ERROR_LOCK_FAILED
    {170, CFileException::accessDenied},     // ERROR_BUSY
    {182, CFileException::invalidFile},      // ERROR_INVALID_ORDINAL
    {183, CFileException::accessDenied},     // ERROR_ALREADY_EXISTS
    {191, CFileException::invalidFile},      // ERROR_INVALID_EXE_SIGNATURE
    {193, CFileException::invalidFile},      // ERROR_BAD_EXE_FORMAT
    {206, CFileException::badPath},          // ERROR_FILENAME_EXCED_RANGE
    {208, CFileException::badPath},          // ERROR_META_EXPANSION_TOO_LONG
    {267, CFileException::badPath},          // ERROR_DIRECTORY
    {995, CFileException::hardIO},           // ERROR_OPERATION_ABORTED
    {996, CFileException::hardIO},           // ERROR_IO_INCOMPLETE
    {997, CFileException::hardIO},           // ERROR_IO_PENDING
    {999, CFileException::accessDenied},     // ERROR_SWAPERROR
};

} // namespace

int CFileException::OsErrorToException(LONG lOsError) {
    for (const OsErrorCause& entry : kOsErrorCauses) {
        if (entry.osError == lOsError) {
            return entry.cause;
        }
    }
    return genericException;
}

void CFileException::ThrowOsError(LONG lOsError, LPCTSTR lpszFileName) {
    if (lOsError != 0) {
        AfxThrowFileException(OsErrorToException(lOsError), lOsError, lpszFileName);
    }
}

void AfxThrowFileException(int cause, LONG lOsError, LPCTSTR lpszFileName) {
    throw new CFileException(cause, lOsError, lpszFileName);
}
