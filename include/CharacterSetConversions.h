#pragma once
// Wide (UTF-16) text to newly allocated narrow text in the active code page and back, or a
// plain copy into a new buffer, in one call per source type.
//
// Every CopyToNew... function sets `out` to a new zero-terminated array and `length` to the
// number of characters in it (bytes for narrow text), the terminator included, and returns
// true. On failure it returns false and leaves `out` and `length` untouched. A null source
// fails. The caller releases the array with the global `::operator delete(out)`.
#include <cstddef>
#include <string>

#include "CString.h"
#include "KelBaseExport.h"
#include "MString.h"

namespace CharacterSetConversions {

/// Plain copies; they fail only for a null source.
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const char* source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const wchar_t* source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const MString& source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const CString& source);
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const std::wstring& source);
/// The library's text character is wide: the same as CopyToNewWCS.
KELBASE_API bool CopyToNewTCS(wchar_t*& out, size_t& length, const wchar_t* source);

#ifdef _WIN32
/// Conversions to the active code page; they fail when the platform reports length 0.
/// Unmappable characters become `*defaultChar` when it is non-null, else the platform's
/// default character.
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const wchar_t* source,
                               const char* defaultChar);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const MString& source);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const CString& source);
KELBASE_API bool CopyToNewMBCS(char*& out, size_t& length, const std::wstring& source);
/// Conversions from the active code page; they fail when the platform reports length 0.
KELBASE_API bool CopyToNewWCS(wchar_t*& out, size_t& length, const char* source);
KELBASE_API bool CopyToNewTCS(wchar_t*& out, size_t& length, const char* source);
#endif

/// Holds a converted or copied text for the duration of a call; null when the conversion
/// produced nothing.
template <class T> class String;

template <> class KELBASE_API String<char> {
public:
    explicit String(const char* text);
#ifdef _WIN32
    /// `defaultChar` replaces the characters the code page cannot represent.
    String(const wchar_t* text, char defaultChar);
    explicit String(const CString& text);
    explicit String(const MString& text);
    explicit String(const std::wstring& text);
#endif
    ~String();
    String(const String&) = delete;
    String& operator=(const String&) = delete;

    operator const char*() const {
        return m_text;
    }

private:
    char* m_text = nullptr;
};

template <> class KELBASE_API String<wchar_t> {
public:
    /// The second argument mirrors String<char> and is ignored.
    String(const wchar_t* text, char);
    explicit String(const CString& text);
    explicit String(const MString& text);
    explicit String(const std::wstring& text);
#ifdef _WIN32
    explicit String(const char* text);
#endif
    ~String();
    String(const String&) = delete;
    String& operator=(const String&) = delete;

    operator const wchar_t*() const {
        return m_text;
    }

private:
    wchar_t* m_text = nullptr;
};

} // namespace CharacterSetConversions
