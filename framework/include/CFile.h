#pragma once
/// @file
/// The framework's unbuffered binary file (Windows only).
#include "CFileException.h"
#include "CObject.h"
#include "CString.h"

/// The framework's unbuffered binary file on a Win32 file handle (Windows only).
///
/// Failures of Read, Write, Seek, GetLength, GetPosition and Close throw CFileException*.
class KELFW_API CFile : public CObject {
    DECLARE_DYNAMIC(CFile)
public:
    /// How Open opens a file: one access mode, one sharing mode and any of the other flags.
    enum OpenFlags {
        modeRead = 0x0000,       ///< Read access.
        modeWrite = 0x0001,      ///< Write access.
        modeReadWrite = 0x0002,  ///< Read and write access.
        shareCompat = 0x0000,    ///< Same as shareExclusive.
        shareExclusive = 0x0010, ///< Others may not open the file.
        shareDenyWrite = 0x0020, ///< Others may open the file for reading only.
        shareDenyRead = 0x0030,  ///< Others may open the file for writing only.
        shareDenyNone = 0x0040,  ///< Others may open the file for reading and writing.
        modeNoInherit = 0x0080,  ///< Child processes do not inherit the handle.
        modeCreate = 0x1000,     ///< Creates the file, truncating an existing one.
        modeNoTruncate = 0x2000, ///< With modeCreate: an existing file is opened, not truncated.
        typeText = 0x4000,       ///< Accepted and ignored: CFile is always binary.
        typeBinary = 0x8000      ///< Accepted and ignored: CFile is always binary.
    };
    /// The origin of Seek.
    enum SeekPosition {
        begin = 0x0,   ///< From the start of the file.
        current = 0x1, ///< From the current position.
        end = 0x2      ///< From the end of the file.
    };

    /// The handle value of a CFile that has no open file.
    static const HANDLE hFileNull;

    /// A CFile with no file open.
    CFile();
    /// Opens the file as Open does; throws CFileException* when it cannot be opened.
    CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
    /// Closes an open file, ignoring errors (a destructor must not throw).
    ~CFile() override;

    /// Opens `lpszFileName` with the OpenFlags in `nOpenFlags`; TRUE on success. On failure
    /// returns FALSE and, when pError is given, fills it with the cause, the operating-system
    /// error and the file name. A file that is still open is closed first.
    virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);

    /// Reads at the current position; returns the bytes read (fewer at the end of the file).
    virtual UINT Read(void* lpBuf, UINT nCount);
    /// Writes `nCount` bytes at the current position.
    virtual void Write(const void* lpBuf, UINT nCount);
    /// Moves the position by `lOff` from the SeekPosition `nFrom`; returns the new position
    /// from the start of the file.
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    /// Moves to the start of the file.
    void SeekToBegin() { Seek(0, begin); }
    /// Moves to the end of the file; returns the file's length.
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    /// The file's length in bytes.
    virtual ULONGLONG GetLength() const;
    /// The current position from the start of the file.
    virtual ULONGLONG GetPosition() const;

    /// Closes the file; closing a CFile with no open file does nothing.
    virtual void Close();
    /// Closes the file without reporting errors.
    virtual void Abort();

    /// The path of the open file as it was given to Open.
    virtual CString GetFilePath() const { return m_strFileName; }
    /// The last component of GetFilePath.
    virtual CString GetFileName() const;

    /// The Win32 file handle; hFileNull when no file is open.
    operator HANDLE() const { return m_hFile; }

    /// The Win32 file handle; hFileNull when no file is open.
    HANDLE m_hFile;

protected:
    /// The path given to Open.
    CString m_strFileName;
};
