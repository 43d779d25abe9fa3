#pragma once
// The framework's exception base and its file exception. As in the framework they are thrown
// by pointer (throw new CFileException(...)), caught as CFileException* and freed with
// Delete().
#include "CObject.h"
#include "CString.h"

class KELFW_API CException : public CObject {
    DECLARE_DYNAMIC(CException)
public:
    // bAutoDelete: whether Delete() frees the object (true for exceptions made with new).
    explicit CException(BOOL bAutoDelete = TRUE) : m_bAutoDelete(bAutoDelete) {}
    void Delete();

protected:
    BOOL m_bAutoDelete;
};

class KELFW_API CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)
public:
    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = CFileException::none, LONG lOsError = -1,
                            LPCTSTR lpszArchiveName = nullptr);

    // The cause for a Win32 error code; unknown codes give genericException.
    static int OsErrorToException(LONG lOsError);
    // Throws the exception for a Win32 error code; an error code of 0 throws nothing.
    static void ThrowOsError(LONG lOsError, LPCTSTR lpszFileName = nullptr);

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;
};

[[noreturn]] KELFW_API void AfxThrowFileException(int cause, LONG lOsError = -1,
                                                  LPCTSTR lpszFileName = nullptr);
