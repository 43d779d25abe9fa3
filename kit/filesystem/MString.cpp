#include "MString.h"

#include <cwctype>
#include <utility>
#include <vector>

#include "MFile.h"
#include "SettingsText.h"
#include "StdBase.h"

MString::MString(const wchar_t* text) : m_text(text ? text : L"") {}

MString::MString(std::wstring text) : m_text(std::move(text)) {}

void MString::FORMAT(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    VFORMAT(format, args);
    va_end(args);
}

void MString::VFORMAT(const wchar_t* format, va_list args) {
    m_text = format ? StdBase::VFormatString(format, args) : std::wstring();
}

MString& MString::operator+=(const MString& other) {
    m_text += other.m_text;
    return *this;
}

MString& MString::operator+=(const wchar_t* text) {
    if (text)
        m_text += text;
    return *this;
}

MString& MString::operator+=(wchar_t c) {
    m_text += c;
    return *this;
}

namespace {

std::wstring Trim(const std::wstring& s, size_t begin, size_t end) {
    while (begin < end && std::iswspace(s[begin]))
        ++begin;
    while (end > begin && std::iswspace(s[end - 1]))
        --end;
    return s.substr(begin, end - begin);
}

bool EqualNoCase(const std::wstring& a, const wchar_t* b) {
    size_t i = 0;
    for (; i < a.size() && b[i]; ++i) {
        if (std::towlower(a[i]) != std::towlower(b[i]))
            return false;
    }
    return i == a.size() && !b[i];
}

} // namespace

namespace KelSDK::FileIO {

std::wstring DecodeSettingsText(const unsigned char* data, size_t size) {
    if (size >= 2 && data[0] == 0xFF && data[1] == 0xFE)
        return StdBase::ConvertUtf16LeToUnicode(data + 2, size - 2);
    if (size >= 3 && data[0] == 0xEF && data[1] == 0xBB && data[2] == 0xBF)
        return StdBase::ConvertUtf8ToUnicode(reinterpret_cast<const char*>(data) + 3, size - 3);
    return StdBase::ConvertAnsiToUnicode(std::string(reinterpret_cast<const char*>(data), size));
}

// Only whole-line comments are recognised: a ';' after a value belongs to the value, as
// settings files written by the system's own profile functions expect. The first occurrence
// of a key in the first matching section wins.
bool FindSettingsValue(const std::wstring& text, const wchar_t* section, const wchar_t* key,
                       std::wstring& value) {
    bool inSection = false;
    size_t lineStart = 0;
    while (lineStart < text.size()) {
        size_t lineEnd = text.find(L'\n', lineStart);
        if (lineEnd == std::wstring::npos)
            lineEnd = text.size();
        const std::wstring line = Trim(text, lineStart, lineEnd);
        lineStart = lineEnd + 1;
        if (line.empty() || line[0] == L';')
            continue;
        if (line[0] == L'[') {
            size_t close = line.find(L']');
            if (close != std::wstring::npos)
                inSection = EqualNoCase(Trim(line, 1, close), section);
            continue;
        }
        size_t equals = line.find(L'=');
        if (!inSection || equals == std::wstring::npos || !EqualNoCase(Trim(line, 0, equals), key))
            continue;
        value = Trim(line, equals + 1, line.size());
        return true;
    }
    return false;
}

} // namespace KelSDK::FileIO

bool MString::LOAD_INI_STRING(const wchar_t* file, const wchar_t* section, const wchar_t* key) {
    m_text.clear();
    if (!file || !section || !key)
        return false;
    MFile in;
    if (!in.OPEN_READ(file) || !in.SEEK_FROM_END())
        return false;
    std::vector<unsigned char> bytes(static_cast<size_t>(in.TELL()));
    if (!in.REWIND() || in.READ(bytes.data(), bytes.size()) != bytes.size())
        return false;
    return KelSDK::FileIO::FindSettingsValue(
        KelSDK::FileIO::DecodeSettingsText(bytes.data(), bytes.size()), section, key, m_text);
}
