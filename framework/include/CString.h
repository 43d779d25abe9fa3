#pragma once
/// @file
/// The framework's wide string.
#include <cstdarg>
#include <string>
#include <type_traits>

#include "AfxTypes.h"
#include "FrameworkExport.h"

/// The framework's wide string (CStringW semantics): a value type holding UTF-16 text.
class KELFW_API CString {
public:
    /// An empty string, or a copy of another.
    ///@{
    CString() = default;
    CString(const CString& other) = default;
    CString(CString&& other) noexcept = default;
    ///@}
    /// A copy of `text`; a null pointer makes an empty string.
    CString(const wchar_t* text);
    /// The first `length` characters of `text`.
    CString(const wchar_t* text, int length);
    /// `text` converted from the active code page; a null pointer makes an empty string.
    CString(const char* text);
    /// `repeat` copies of `ch`.
    explicit CString(wchar_t ch, int repeat = 1);
    ~CString() = default;

    /// Replaces the text with `other` (narrow text converted from the active code page).
    ///@{
    CString& operator=(const CString& other) = default;
    CString& operator=(CString&& other) noexcept = default;
    CString& operator=(const wchar_t* text);
    CString& operator=(const char* text);
    CString& operator=(wchar_t ch);
    ///@}

    /// Appends `text` (narrow text converted from the active code page).
    ///@{
    CString& operator+=(const CString& text);
    CString& operator+=(const wchar_t* text);
    CString& operator+=(const char* text);
    CString& operator+=(wchar_t ch);
    ///@}

    /// The number of characters.
    int GetLength() const { return static_cast<int>(m_str.size()); }
    /// True when the string has no characters.
    bool IsEmpty() const { return m_str.empty(); }
    /// Makes the string empty.
    void Empty() { m_str.clear(); }
    /// The zero-terminated text; valid until the string changes.
    ///@{
    const wchar_t* GetString() const { return m_str.c_str(); }
    operator const wchar_t*() const { return m_str.c_str(); }
    ///@}

    /// The character at `index`. An index outside the string raises std::out_of_range (the
    /// framework raises an invalid-argument exception).
    ///@{
    wchar_t GetAt(int index) const;
    wchar_t operator[](int index) const { return GetAt(index); }
    ///@}
    /// Replaces the character at `index`; std::out_of_range outside the string.
    void SetAt(int index, wchar_t ch);

    /// Ordinal comparison, and comparison ignoring case one character at a time; a null pointer
    /// compares as the empty string. Results are negative, zero or positive.
    ///@{
    int Compare(const wchar_t* text) const;
    int CompareNoCase(const wchar_t* text) const;
    ///@}

    /// A writable buffer of the text, holding at least `minBufferLength` (or `length`, which
    /// GetBufferSetLength also makes the string's length) characters plus a terminator. Until
    /// ReleaseBuffer, GetLength reports the buffer's length, not the text's.
    ///@{
    wchar_t* GetBuffer();
    wchar_t* GetBuffer(int minBufferLength);
    wchar_t* GetBufferSetLength(int length);
    ///@}
    /// Ends the use of the GetBuffer pointer and sets the length: -1 measures the text up to its
    /// first zero; other lengths are taken as given (clamped to the buffer).
    void ReleaseBuffer(int newLength = -1);

    /// printf formatting with the framework's conventions: \%s and \%c take wide arguments.
    /// CString arguments may be passed directly; other class objects are rejected at compile
    /// time because they cannot travel through a variable argument list.
    ///@{
    template <typename... Args> void Format(const wchar_t* format, const Args&... args) {
        FormatUnpacked(format, FormatArg(args)...);
    }
    void FormatV(const wchar_t* format, va_list args);
    ///@}

    /// The first `count` characters, those from `first` on (`count` of them), or the last
    /// `count`. Counts and positions outside the string are clamped as the framework does.
    ///@{
    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Right(int count) const;
    ///@}

    /// The zero-based position of the first `ch` or `sub` from `start` on (of the last `ch`
    /// for ReverseFind), or -1. A start outside the string finds nothing.
    ///@{
    int Find(wchar_t ch, int start = 0) const;
    int Find(const wchar_t* sub, int start = 0) const;
    int ReverseFind(wchar_t ch) const;
    ///@}

    /// Removes leading and trailing (Trim), leading (TrimLeft) or trailing (TrimRight)
    /// characters: white space without an argument, otherwise `target` or any of `targets`.
    /// Returns the string.
    ///@{
    CString& Trim();
    CString& Trim(wchar_t target);
    CString& Trim(const wchar_t* targets);
    CString& TrimLeft();
    CString& TrimLeft(wchar_t target);
    CString& TrimLeft(const wchar_t* targets);
    CString& TrimRight();
    CString& TrimRight(wchar_t target);
    CString& TrimRight(const wchar_t* targets);
    ///@}

    /// Replaces every occurrence of the old character or text by the new one and returns the
    /// number of replacements. An empty or null old text replaces nothing; a null new text
    /// removes the old one.
    ///@{
    int Replace(wchar_t oldChar, wchar_t newChar);
    int Replace(const wchar_t* oldText, const wchar_t* newText);
    ///@}

    /// Converts the text to lower or upper case; returns the string.
    ///@{
    CString& MakeLower();
    CString& MakeUpper();
    ///@}

private:
    explicit CString(std::wstring text) : m_str(std::move(text)) {}
    void FormatUnpacked(const wchar_t* format, ...);
    static const wchar_t* FormatArg(const CString& text) { return text.GetString(); }
    template <typename T> static T FormatArg(T value) {
        static_assert(!std::is_class<T>::value && !std::is_union<T>::value,
                      "pass texts to Format as const wchar_t* or CString");
        return value;
    }
    CString& TrimLeftWhere(bool (*match)(wchar_t, const wchar_t*), const wchar_t* targets);
    CString& TrimRightWhere(bool (*match)(wchar_t, const wchar_t*), const wchar_t* targets);

    std::wstring m_str;
};

/// The concatenation of `left` and `right`.
///@{
inline CString operator+(const CString& left, const CString& right) {
    CString result(left);
    return result += right;
}
inline CString operator+(const CString& left, const wchar_t* right) {
    CString result(left);
    return result += right;
}
inline CString operator+(const wchar_t* left, const CString& right) {
    CString result(left);
    return result += right;
}
inline CString operator+(const CString& left, wchar_t right) {
    CString result(left);
    return result += right;
}
inline CString operator+(wchar_t left, const CString& right) {
    CString result(left);
    return result += right;
}

///@}

/// Ordinal comparison of two texts; a null pointer compares as the empty string.
///@{
inline bool operator==(const CString& left, const CString& right) {
    return left.Compare(right) == 0;
}
inline bool operator==(const CString& left, const wchar_t* right) {
    return left.Compare(right) == 0;
}
inline bool operator==(const wchar_t* left, const CString& right) {
    return right.Compare(left) == 0;
}
inline bool operator!=(const CString& left, const CString& right) {
    return !(left == right);
}
inline bool operator!=(const CString& left, const wchar_t* right) {
    return !(left == right);
}
inline bool operator!=(const wchar_t* left, const CString& right) {
    return !(left == right);
}
inline bool operator<(const CString& left, const CString& right) {
    return left.Compare(right) < 0;
}
inline bool operator<(const CString& left, const wchar_t* right) {
    return left.Compare(right) < 0;
}
inline bool operator<(const wchar_t* left, const CString& right) {
    return right.Compare(left) > 0;
}
///@}
