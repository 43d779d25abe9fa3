#pragma once
/// @file
/// Wide string of the file-system kit.
#include <cstdarg>
#include <string>

#include "FileSystemExport.h"

/// Wide string of the file-system kit: printf-style formatting and settings-file values.
class KELFS_API MString {
public:
    /// The empty string.
    MString() = default;
    /// A copy of `text`; null gives the empty string.
    MString(const wchar_t* text);
    /// Takes `text`.
    MString(std::wstring text);

    /// The zero-terminated text; valid until the string changes.
    const wchar_t* C_STR() const { return m_text.c_str(); }
    /// The text.
    const std::wstring& str() const { return m_text; }
    /// A copy of the text.
    operator std::wstring() const { return m_text; }
    /// The number of characters.
    size_t GetLength() const { return m_text.size(); }
    /// True when the string has no characters.
    bool IsEmpty() const { return m_text.empty(); }

    /// Replaces the text by the formatted arguments: printf-style with the platform's wide
    /// conventions (\%s takes a wide string). A null format gives the empty string.
    ///@{
    void FORMAT(const wchar_t* format, ...);
    void VFORMAT(const wchar_t* format, va_list args);
    ///@}

    /// Loads the value of `key` in `section` of the settings file `file` into this string and
    /// returns true when the key is present. Section and key match without regard to case,
    /// whitespace around the name, the '=' and the value is dropped, lines starting with ';'
    /// are comments; keys before the first header are in the section "". The file may be
    /// UTF-16LE or UTF-8 (DecodeSettingsText tells them apart) or ANSI text. When the key is
    /// missing (or the file cannot be read) the string becomes empty.
    bool LOAD_INI_STRING(const wchar_t* file, const wchar_t* section, const wchar_t* key);

    /// Appends `other`, `text` (null appends nothing) or `c`.
    ///@{
    MString& operator+=(const MString& other);
    MString& operator+=(const wchar_t* text);
    MString& operator+=(wchar_t c);
    ///@}

    /// Ordinal comparison of the texts.
    ///@{
    friend bool operator==(const MString& a, const MString& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const MString& a, const MString& b) { return a.m_text != b.m_text; }
    friend bool operator<(const MString& a, const MString& b) { return a.m_text < b.m_text; }
    ///@}

private:
    std::wstring m_text;
};
