#pragma once
/// @file
/// The system's message text for a Win32 error code (Windows only).
//
// Decisions: the text is the system's message in the user's default language without its
// trailing line break (and the blanks before it); a message longer than the buffer is cut to
// fit rather than replaced.
#include <cstddef>

#include "AfxTypes.h"
#include "CString.h"
#include "KelBaseExport.h"

// System messages exist only on Windows.
#ifdef _WIN32

/// A Win32 error code and its message text, in the system's words.
class KELBASE_API MSysError {
public:
    /// Codes.
    enum : DWORD {
        LastError = 0xFFFFFFFF, ///< Stands for the calling thread's last error.
    };
    /// Sizes.
    enum : std::size_t {
        TextCapacity = 200, ///< The characters of the text buffer, terminator included.
    };

    /// Code 0, the empty text.
    MSysError() = default;
    /// The code (LastError: the thread's last error) and its message, as Fill.
    explicit MSysError(DWORD code) { Fill(code); }

    /// Writes the message for `code` into `buffer` (at most size - 1 characters, always
    /// terminated). Code 0 gives the empty text; a code without a message gives
    /// "<error code=N (0xXXXXXXXX)>" when size exceeds 40, else the empty text. True when a
    /// text was written.
    static bool Fill(wchar_t* buffer, std::size_t size, DWORD code);
    /// The same into this object, which keeps the code (LastError is resolved first).
    bool Fill(DWORD code);

    /// The code, LastError resolved.
    DWORD GetCode() const { return m_code; }
    /// The message text, at most 199 characters.
    const wchar_t* GetText() const { return m_text; }

private:
    DWORD m_code = 0;
    wchar_t m_text[TextCapacity] = {};
};

/// The message text of a Win32 error code as a CString.
class KELBASE_API MSysErrorCode {
public:
    /// The text of MSysError::Fill through a 200-character buffer; returns `text`.
    static CString& LoadError(CString& text, DWORD code);
};

#endif
