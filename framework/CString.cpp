#include "CString.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <stdexcept>

#include "StdBase.h"

namespace {

const wchar_t* TextOrEmpty(const wchar_t* text) {
    return text != nullptr ? text : L"";
}

std::wstring FromNarrow(const char* text) {
    return text != nullptr ? StdBase::ConvertAnsiToUnicode(text) : std::wstring();
}

bool IsWhiteSpace(wchar_t ch, const wchar_t*) {
    return std::iswspace(ch) != 0;
}

bool IsOneOf(wchar_t ch, const wchar_t* targets) {
    for (const wchar_t* t = targets; *t != 0; ++t) {
        if (*t == ch) {
            return true;
        }
    }
    return false;
}

void MapCharacters(std::wstring& text, std::wint_t (*map)(std::wint_t)) {
    for (wchar_t& ch : text) {
        ch = static_cast<wchar_t>(map(static_cast<std::wint_t>(ch)));
    }
}

} // namespace

CString::CString(const wchar_t* text) : m_str(TextOrEmpty(text)) {}

CString::CString(const wchar_t* text, int length)
    : m_str(text != nullptr && length > 0 ? std::wstring(text, static_cast<size_t>(length))
                                          : std::wstring()) {}

CString::CString(const char* text) : m_str(FromNarrow(text)) {}

CString::CString(wchar_t ch, int repeat) : m_str(static_cast<size_t>(std::max(repeat, 0)), ch) {}

CString& CString::operator=(const wchar_t* text) {
    m_str = TextOrEmpty(text);
    return *this;
}

CString& CString::operator=(const char* text) {
    m_str = FromNarrow(text);
    return *this;
}

CString& CString::operator=(wchar_t ch) {
    m_str.assign(1, ch);
    return *this;
}

CString& CString::operator+=(const CString& text) {
    m_str += text.m_str;
    return *this;
}

CString& CString::operator+=(const wchar_t* text) {
    m_str += TextOrEmpty(text);
    return *this;
}

CString& CString::operator+=(const char* text) {
    m_str += FromNarrow(text);
    return *this;
}

CString& CString::operator+=(wchar_t ch) {
    m_str += ch;
    return *this;
}

wchar_t CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength()) {
        throw std::out_of_range("CString::GetAt");
    }
    return m_str[static_cast<size_t>(index)];
}

void CString::SetAt(int index, wchar_t ch) {
    if (index < 0 || index >= GetLength()) {
        throw std::out_of_range("CString::SetAt");
    }
    m_str[static_cast<size_t>(index)] = ch;
}

int CString::Compare(const wchar_t* text) const {
    return std::wcscmp(m_str.c_str(), TextOrEmpty(text));
}

int CString::CompareNoCase(const wchar_t* text) const {
    return StdBase::CompareNoCase(m_str.c_str(), TextOrEmpty(text));
}

wchar_t* CString::GetBuffer() {
    return &m_str[0];
}

wchar_t* CString::GetBuffer(int minBufferLength) {
    if (minBufferLength > GetLength()) {
        m_str.resize(static_cast<size_t>(minBufferLength));
    }
    return &m_str[0];
}

wchar_t* CString::GetBufferSetLength(int length) {
    m_str.resize(static_cast<size_t>(std::max(length, 0)));
    return &m_str[0];
}

void CString::ReleaseBuffer(int newLength) {
    size_t length = m_str.size();
    if (newLength < 0) {
        length = std::min(length, m_str.find(L'\0'));
    } else {
        length = std::min(length, static_cast<size_t>(newLength));
    }
    m_str.resize(length);
}

void CString::FormatUnpacked(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const wchar_t* format, va_list args) {
    m_str = StdBase::VFormatString(TextOrEmpty(format), args);
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    first = std::clamp(first, 0, GetLength());
    count = std::clamp(count, 0, GetLength() - first);
    return CString(m_str.substr(static_cast<size_t>(first), static_cast<size_t>(count)));
}

CString CString::Right(int count) const {
    count = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - count, count);
}

int CString::Find(wchar_t ch, int start) const {
    if (start < 0 || start >= GetLength()) {
        return -1;
    }
    const size_t pos = m_str.find(ch, static_cast<size_t>(start));
    return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const wchar_t* sub, int start) const {
    if (sub == nullptr || start < 0 || start > GetLength()) {
        return -1;
    }
    const size_t pos = m_str.find(sub, static_cast<size_t>(start));
    return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(wchar_t ch) const {
    const size_t pos = m_str.rfind(ch);
    return pos == std::wstring::npos ? -1 : static_cast<int>(pos);
}

CString& CString::TrimLeftWhere(bool (*match)(wchar_t, const wchar_t*), const wchar_t* targets) {
    size_t first = 0;
    while (first < m_str.size() && match(m_str[first], targets)) {
        ++first;
    }
    m_str.erase(0, first);
    return *this;
}

CString& CString::TrimRightWhere(bool (*match)(wchar_t, const wchar_t*), const wchar_t* targets) {
    size_t end = m_str.size();
    while (end > 0 && match(m_str[end - 1], targets)) {
        --end;
    }
    m_str.erase(end);
    return *this;
}

CString& CString::Trim() {
    return TrimLeft().TrimRight();
}

CString& CString::Trim(wchar_t target) {
    return TrimLeft(target).TrimRight(target);
}

CString& CString::Trim(const wchar_t* targets) {
    return TrimLeft(targets).TrimRight(targets);
}

CString& CString::TrimLeft() {
    return TrimLeftWhere(IsWhiteSpace, nullptr);
}

CString& CString::TrimLeft(wchar_t target) {
    const wchar_t targets[] = {target, 0};
    return TrimLeft(targets);
}

CString& CString::TrimLeft(const wchar_t* targets) {
    return TrimLeftWhere(IsOneOf, TextOrEmpty(targets));
}

CString& CString::TrimRight() {
    return TrimRightWhere(IsWhiteSpace, nullptr);
}

CString& CString::TrimRight(wchar_t target) {
    const wchar_t targets[] = {target, 0};
    return TrimRight(targets);
}

CString& CString::TrimRight(const wchar_t* targets) {
    return TrimRightWhere(IsOneOf, TextOrEmpty(targets));
}

int CString::Replace(wchar_t oldChar, wchar_t newChar) {
    int count = 0;
    for (wchar_t& ch : m_str) {
        if (ch == oldChar) {
            ch = newChar;
            ++count;
        }
    }
    return count;
}

int CString::Replace(const wchar_t* oldText, const wchar_t* newText) {
    const std::wstring from(TextOrEmpty(oldText));
    const std::wstring to(TextOrEmpty(newText));
    if (from.empty()) {
        return 0;
    }
    std::wstring result;
    int count = 0;
    size_t done = 0;
    for (size_t pos = m_str.find(from); pos != std::wstring::npos; pos = m_str.find(from, done)) {
        result.append(m_str, done, pos - done).append(to);
        done = pos + from.size();
        ++count;
    }
    result.append(m_str, done, std::wstring::npos);
    m_str.swap(result);
    return count;
}

CString& CString::MakeLower() {
    MapCharacters(m_str, [](std::wint_t ch) { return std::towlower(ch); });
    return *this;
}

CString& CString::MakeUpper() {
    MapCharacters(m_str, [](std::wint_t ch) { return std::towupper(ch); });
    return *this;
}
