#pragma once
/// @file
/// CRegUtils, one-shot registry values of the current user (Windows only).
#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"

// The registry exists only on Windows.
#ifdef _WIN32

/// One-shot reads and writes of a value below HKEY_CURRENT_USER: each call opens (or, to write,
/// creates) the key, uses it once and closes it again. No status is kept.
class KELBASE_API CRegUtils {
public:
    /// The value, of whatever type, read as text into 260 characters (520 bytes); larger values
    /// fail.
    static bool LoadRegKey(const CString& key, const CString& value, CString& text);
    /// The value into the caller's buffer of `size` bytes.
    static bool LoadRegKey(const CString& key, const CString& value, void* data, DWORD size);
    /// The stored size in bytes, or -1. A successful call leaves its key handle open, as the
    /// function always did.
    static long GetRegKeySize(const CString& key, const CString& value);
    /// Writes a string (terminator included).
    static bool SaveRegKey(const CString& key, const CString& value, const CString& text);
    /// Writes a binary value.
    static bool SaveRegKey(const CString& key, const CString& value, const void* data, DWORD size);
};

#endif
