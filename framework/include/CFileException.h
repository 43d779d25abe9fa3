#pragma once
/// @file
/// The framework's exception base and its file exception. As in the framework they are thrown
/// by pointer (throw new CFileException(...)), caught as CFileException* and freed with
/// Delete().
#include "CObject.h"
#include "CString.h"

/// The base of the framework's exceptions, thrown by pointer.
class KELFW_API CException : public CObject {
    DECLARE_DYNAMIC(CException)
public:
    /// `bAutoDelete`: whether Delete() frees the object (true for exceptions made with new).
    explicit CException(BOOL bAutoDelete = TRUE) : m_bAutoDelete(bAutoDelete) {}
    /// Frees the exception when it was made with auto-delete; call it in the catch block.
    void Delete();

protected:
    /// Whether Delete() frees the object.
    BOOL m_bAutoDelete;
};

/// A failed file operation: its cause, the system error code and the file's name.
class KELFW_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)
public:
    /// The causes, the values of m_cause.
    enum {
        none,             ///< No error.
        genericException, ///< An error with no more specific cause.
        fileNotFound,     ///< The file does not exist.
        badPath,          ///< The path is invalid or does not exist.
        tooManyOpenFiles, ///< No more files can be opened.
        accessDenied,     ///< Access is denied.
        invalidFile,      ///< An invalid file handle was used.
        removeCurrentDir, ///< The current directory cannot be removed.
        directoryFull,    ///< The directory has no room for another entry.
        badSeek,          ///< The position could not be set.
        hardIO,           ///< A hardware error.
        sharingViolation, ///< Another process has the file open in a conflicting share mode.
        lockViolation,    ///< A region of the file is locked.
        diskFull,         ///< The disk is full.
        endOfFile         ///< The end of the file was reached.
    };

    /// An exception with the given cause, system error code (-1: none) and file name.
    explicit CFileException(int cause = CFileException::none, LONG lOsError = -1,
                            LPCTSTR lpszArchiveName = nullptr);

    /// The cause for a Win32 error code; unknown codes give genericException.
    static int OsErrorToException(LONG lOsError);
    /// Throws the exception for a Win32 error code; an error code of 0 throws nothing.
    static void ThrowOsError(LONG lOsError, LPCTSTR lpszFileName = nullptr);

    int m_cause;           ///< One of the causes above.
    LONG m_lOsError;       ///< The Win32 error code, -1 when there is none.
    CString m_strFileName; ///< The file concerned, empty when not known.
};

/// Throws a new CFileException with the given cause, system error code and file name.
[[noreturn]] KELFW_API void AfxThrowFileException(int cause, LONG lOsError = -1,
                                                  LPCTSTR lpszFileName = nullptr);
