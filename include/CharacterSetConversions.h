#pragma once
/// @file
/// Wide (UTF-16) text to newly allocated narrow text in the active code page and back, or a
/// plain copy into a new buffer, in one call per source type.
#include <cstddef>
#include <string>

#include "CString.h"
#include "KelBaseExport.h"
#include "MString.h"

/// Text copies and code-page conversions into new buffers.
///
/// Every CopyToNew... function sets `out` to a new zero-terminated array and `length` to the
/// number of characters in it (bytes for narrow text), the terminator included, and returns
/// true. On failure it returns false and leaves `out` and `length` untouched. A null source
/// fails. The caller releases the array with the global operator delete, `operator delete(out)`.
namespace CharacterSetConversions {

/// Plain copies; they fail only for a null source.
///@{
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const char* source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const wchar_t* source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const MString& source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const CString& source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const std::wstring& source);
///@}
/// The library's text character is wide: the same as CopyToNewWCS.
KELBASE_API bool CopyToNewTCS(wchar_t*& out, size_t& length, const wchar_t* source);

#ifdef _WIN32
/// Conversions to the active code page; they fail when the platform reports length 0.
/// Unmappable characters become `*defaultChar` when it is non-null, else the platform's
/// default character.
///@{
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const wchar_t* source,
                               const char* defaultChar);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const MString& source);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const CString& source);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const std::wstring& source);
///@}
/// Conversions from the active code page; they fail when the platform reports length 0.
///@{
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const char* source);
KELBASE_API bool CopyToNewTCS(wchar_t*& out, size_t& length, const char* source);
///@}
#endif

/// Holds a converted or copied text for the duration of a call; null when the conversion
/// produced nothing.
template <class T> class String;

/// Narrow text in the active code page, copied or converted from the argument.
template <> class KELBASE_API String<char> {
public:
    /// A copy of `text`.
    explicit String(const char* text);
#ifdef _WIN32
    /// `text` converted; `defaultChar` replaces the characters the code page cannot represent.
    String(const wchar_t* text, char defaultChar);
    /// `text` converted, with the platform's default character for unmappable ones.
    ///@{
    explicit String(const CString& text);
    explicit String(const MString& text);
    explicit String(const std::wstring& text);
    ///@}
#endif
    /// Releases the text.
    ~String();
    String(const String&) = delete;
    String& operator=(const String&) = delete;

    /// The text; null when the conversion produced nothing.
    operator const char*() const {
        return m_text;
    }

private:
    char* m_text = nullptr;
};

/// Wide text, copied or converted from the argument.
template <> class KELBASE_API String<wchar_t> {
public:
    /// A copy of `text`; the second argument mirrors String<char> and is ignored.
    String(const wchar_t* text, char);
    /// A copy of `text`.
    ///@{
    explicit String(const CString& text);
    explicit String(const MString& text);
    explicit String(const std::wstring& text);
    ///@}
#ifdef _WIN32
    /// `text` converted from the active code page.
    explicit String(const char* text);
#endif
    /// Releases the text.
    ~String();
    String(const String&) = delete;
    String& operator=(const String&) = delete;

    /// The text; null when the conversion produced nothing.
    operator const wchar_t*() const {
        return m_text;
    }

private:
    wchar_t* m_text = nullptr;
};

} // namespace CharacterSetConversions
