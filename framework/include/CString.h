#pragma once
// The framework's wide string (CStringW semantics).
#include <cstdarg>
#include <string>
#include <type_traits>

#include "AfxTypes.h"
#include "FrameworkExport.h"

class KELFW_API CString {
public:
    CString() = default;
    CString(const CString& other) = default;
    CString(CString&& other) noexcept = default;
    // A null pointer makes an empty string.
    CString(const wchar_t* text);
    CString(const wchar_t* text, int length);
    // Narrow text is in the active code page.
    CString(const char* text);
    explicit CString(wchar_t ch, int repeat = 1);
    ~CString() = default;

    CString& operator=(const CString& other) = default;
    CString& operator=(CString&& other) noexcept = default;
    CString& operator=(const wchar_t* text);
    CString& operator=(const char* text);
    CString& operator=(wchar_t ch);

    CString& operator+=(const CString& text);
    CString& operator+=(const wchar_t* text);
    CString& operator+=(const char* text);
    CString& operator+=(wchar_t ch);

    int GetLength() const { return static_cast<int>(m_str.size()); }
    bool IsEmpty() const { return m_str.empty(); }
    void Empty() { m_str.clear(); }
    const wchar_t* GetString() const { return m_str.c_str(); }
    operator const wchar_t*() const { return m_str.c_str(); }

    // An index outside the string raises std::out_of_range (the framework raises an
    // invalid-argument exception).
    wchar_t GetAt(int index) const;
    wchar_t operator[](int index) const { return GetAt(index); }
    void SetAt(int index, wchar_t ch);

    // Ordinal comparison, and comparison ignoring case one character at a time; a null pointer
    // compares as the empty string. Results are negative, zero or positive.
    int Compare(const wchar_t* text) const;
    int CompareNoCase(const wchar_t* text) const;

    // The buffer holds at least minBufferLength characters plus a terminator. Until
    // ReleaseBuffer, GetLength reports the buffer's length, not the text's.
    wchar_t* GetBuffer();
    wchar_t* GetBuffer(int minBufferLength);
    wchar_t* GetBufferSetLength(int length);
    // -1 measures the text up to its first zero; other lengths are taken as given (clamped to
    // the buffer).
    void ReleaseBuffer(int newLength = -1);

    // printf formatting with the framework's conventions: %s and %c take wide arguments.
    // CString arguments may be passed directly; other class objects are rejected at compile
    // time because they cannot travel through a variable argument list.
    template <typename... Args> void Format(const wchar_t* format, const Args&... args) {
        FormatUnpacked(format, FormatArg(args)...);
    }
    void FormatV(const wchar_t* format, va_list args);

    // Counts and positions outside the string are clamped as the framework does.
    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Right(int count) const;

    // Zero-based position or -1. A start outside the string finds nothing.
    int Find(wchar_t ch, int start = 0) const;
    int Find(const wchar_t* sub, int start = 0) const;
    int ReverseFind(wchar_t ch) const;

    // Without an argument these remove white space; otherwise the given character(s).
    CString& Trim();
    CString& Trim(wchar_t target);
    CString& Trim(const wchar_t* targets);
    CString& TrimLeft();
    CString& TrimLeft(wchar_t target);
    CString& TrimLeft(const wchar_t* targets);
    CString& TrimRight();
    CString& TrimRight(wchar_t target);
    CString& TrimRight(const wchar_t* targets);

    // Return the number of replacements. An empty or null old text replaces nothing; a null
    // new text removes the old one.
    int Replace(wchar_t oldChar, wchar_t newChar);
    int Replace(const wchar_t* oldText, const wchar_t* newText);

    CString& MakeLower();
    CString& MakeUpper();

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
