#include "SettingsText.h"

#include <cstring>
#include <string_view>

#include "StdBase.h"

namespace KelSDK::FileIO {

namespace {

const unsigned char kUtf16Mark[] = {0xFF, 0xFE};
const unsigned char kUtf8Signature[] = {0xEF, 0xBB, 0xBF};

template <size_t N>
bool StartsWith(const unsigned char* data, size_t size, const unsigned char (&mark)[N]) {
    return size >= N && std::memcmp(data, mark, N) == 0;
}

bool HasNonAscii(const unsigned char* data, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        if (data[i] >= 0x80)
            return true;
    }
    return false;
}

// [begin, end) without the blanks at either side.
void Trim(const wchar_t* line, size_t& begin, size_t& end) {
    while (begin < end && IsSettingsBlank(line[begin]))
        ++begin;
    while (end > begin && IsSettingsBlank(line[end - 1]))
        --end;
}

// Whether the name at [begin, end) of the line at `lineStart` is `name`.
bool NameIs(std::wstring_view text, size_t lineStart, size_t begin, size_t end,
            const std::wstring& name) {
    return StdBase::CompareNoCase(text.substr(lineStart + begin, end - begin), name) == 0;
}

} // namespace

std::wstring DecodeSettingsText(const unsigned char* data, size_t size,
                                SettingsEncoding* encoding) {
    SettingsEncoding found = SettingsEncoding::Ansi;
    std::wstring text;
    if (StartsWith(data, size, kUtf16Mark)) {
        found = SettingsEncoding::Utf16Le;
        text = StdBase::ConvertUtf16LeToUnicode(data + 2, size - 2);
    } else if (StartsWith(data, size, kUtf8Signature)) {
        found = SettingsEncoding::Utf8Signature;
        text = StdBase::ConvertUtf8ToUnicode(reinterpret_cast<const char*>(data) + 3, size - 3);
    } else if (HasNonAscii(data, size) &&
               StdBase::IsUtf8(reinterpret_cast<const char*>(data), size)) {
        found = SettingsEncoding::Utf8;
        text = StdBase::ConvertUtf8ToUnicode(reinterpret_cast<const char*>(data), size);
    } else {
        text =
            StdBase::ConvertAnsiToUnicode(std::string(reinterpret_cast<const char*>(data), size));
    }
    if (encoding)
        *encoding = found;
    return text;
}

std::string EncodeSettingsText(const std::wstring& text, SettingsEncoding encoding) {
    switch (encoding) {
    case SettingsEncoding::Utf16Le:
        return std::string(reinterpret_cast<const char*>(kUtf16Mark), sizeof kUtf16Mark) +
               StdBase::ConvertUnicodeToUtf16Le(text);
    case SettingsEncoding::Utf8Signature:
        return std::string(reinterpret_cast<const char*>(kUtf8Signature), sizeof kUtf8Signature) +
               StdBase::ConvertUnicodeToUtf8(text);
    case SettingsEncoding::Utf8:
        return StdBase::ConvertUnicodeToUtf8(text);
    case SettingsEncoding::Ansi:
        break;
    }
    return StdBase::ConvertUnicodeToAnsi(text);
}

bool IsSettingsBlank(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\v' || c == L'\f' || c == L'\r' ||
           c == 0x1A;
}

std::wstring TrimSettingsBlanks(const std::wstring& text) {
    size_t begin = 0, end = text.size();
    Trim(text.data(), begin, end);
    return text.substr(begin, end - begin);
}

size_t FindSettingsLineEnd(const std::wstring& text, size_t begin, size_t& next) {
    const size_t end = text.find_first_of(L"\r\n", begin);
    if (end == std::wstring::npos) {
        next = text.size();
        return text.size();
    }
    next = end + (text[end] == L'\r' && end + 1 < text.size() && text[end + 1] == L'\n' ? 2 : 1);
    return end;
}

SettingsLine SettingsLine::Parse(const wchar_t* line, size_t length) {
    SettingsLine parsed;
    size_t begin = 0, end = length;
    Trim(line, begin, end);
    if (begin == end)
        return parsed;
    if (line[begin] == L';') {
        parsed.kind = Comment;
        return parsed;
    }
    if (line[begin] == L'[') {
        const wchar_t* close =
            std::char_traits<wchar_t>::find(line + begin + 1, end - begin - 1, L']');
        if (close) {
            parsed.kind = Section;
            parsed.nameBegin = begin + 1;
            parsed.nameEnd = static_cast<size_t>(close - line);
            Trim(line, parsed.nameBegin, parsed.nameEnd);
            return parsed;
        }
    }
    const wchar_t* equals = std::char_traits<wchar_t>::find(line + begin, end - begin, L'=');
    if (!equals) {
        parsed.kind = Other;
        return parsed;
    }
    parsed.kind = Entry;
    parsed.nameBegin = begin;
    parsed.nameEnd = static_cast<size_t>(equals - line);
    parsed.valueBegin = parsed.nameEnd + 1;
    parsed.valueEnd = end;
    Trim(line, parsed.nameBegin, parsed.nameEnd);
    Trim(line, parsed.valueBegin, parsed.valueEnd);
    return parsed;
}

bool FindSettingsValue(const std::wstring& text, const wchar_t* section, const wchar_t* key,
                       std::wstring& value) {
    const std::wstring sectionName = TrimSettingsBlanks(section), keyName = TrimSettingsBlanks(key);
    // Keys before the first header belong to the section without a name.
    bool inSection = sectionName.empty();
    for (size_t start = 0, next = 0; start < text.size(); start = next) {
        const size_t end = FindSettingsLineEnd(text, start, next);
        const SettingsLine line = SettingsLine::Parse(text.data() + start, end - start);
        if (line.kind == SettingsLine::Section) {
            inSection = NameIs(text, start, line.nameBegin, line.nameEnd, sectionName);
        } else if (line.kind == SettingsLine::Entry && inSection &&
                   NameIs(text, start, line.nameBegin, line.nameEnd, keyName)) {
            value = text.substr(start + line.valueBegin, line.valueEnd - line.valueBegin);
            return true;
        }
    }
    return false;
}

} // namespace KelSDK::FileIO
