#pragma once
// The framework's unbuffered binary file on a Win32 file handle (Windows only). Failures of
// Read, Write, Seek, GetLength, GetPosition and Close throw CFileException*.
#include "CFileException.h"
#include "CObject.h"
#include "CString.h"

class KELFW_API CFile : public CObject {
    DECLARE_DYNAMIC(CFile)
public:
    enum OpenFlags {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition { begin = 0x0, current = 0x1, end = 0x2 };

    static const HANDLE hFileNull;

    CFile();
    // Throws CFileException* when the file cannot be opened.
    CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
    // Closes an open file, ignoring errors (a destructor must not throw).
    ~CFile() override;

    // On failure returns FALSE and, when pError is given, fills it with the cause, the
    // operating-system error and the file name. A file that is still open is closed first.
    virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);

    // Reads at the current position; returns the bytes read (fewer at the end of the file).
    virtual UINT Read(void* lpBuf, UINT nCount);
    virtual void Write(const void* lpBuf, UINT nCount);
    // Returns the new position from the start of the file.
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    virtual ULONGLONG GetLength() const;
    virtual ULONGLONG GetPosition() const;

    virtual void Close();
    // Closes without reporting errors.
    virtual void Abort();

    // The full path of the open file, and its last component.
    virtual CString GetFilePath() const { return m_strFileName; }
    virtual CString GetFileName() const;

    operator HANDLE() const { return m_hFile; }

    HANDLE m_hFile;

protected:
    CString m_strFileName;
};
