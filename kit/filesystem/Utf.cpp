#include "Utf.h"

namespace Utf {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

bool IsHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

void AppendCodePoint(std::wstring& out, char32_t c) {
    if (c > 0x10FFFF || IsHighSurrogate(c) || IsLowSurrogate(c))
        c = REPLACEMENT;
    if (sizeof(wchar_t) == 2 && c > 0xFFFF) {
        c -= 0x10000;
        out += static_cast<wchar_t>(0xD800 + (c >> 10));
        out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
    } else {
        out += static_cast<wchar_t>(c);
    }
}

} // namespace

std::wstring Utf8ToWide(const char* data, size_t size) {
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    std::wstring out;
    out.reserve(size);
    size_t i = 0;
    while (i < size) {
        unsigned char lead = s[i++];
        if (lead < 0x80) {
            out += static_cast<wchar_t>(lead);
            continue;
        }
        // Leads C0, C1 and above F4 can only start overlong or out-of-range sequences.
        size_t extra = lead >= 0xF5   ? 0
                       : lead >= 0xF0 ? 3
                       : lead >= 0xE0 ? 2
                       : lead >= 0xC2 ? 1
                                      : 0;
        if (extra == 0) {
            AppendCodePoint(out, REPLACEMENT);
            continue;
        }
        char32_t c = lead & (0x3F >> extra);
        size_t taken = 0;
        while (taken < extra && i < size && (s[i] & 0xC0) == 0x80) {
            c = (c << 6) | (s[i++] & 0x3F);
            ++taken;
        }
        static const char32_t minimum[] = {0, 0x80, 0x800, 0x10000};
        AppendCodePoint(out, taken == extra && c >= minimum[extra] ? c : REPLACEMENT);
    }
    return out;
}

std::wstring Utf16LeToWide(const unsigned char* data, size_t size) {
    const size_t count = size / 2;
    auto unitAt = [data](size_t k) {
        return static_cast<char32_t>(data[2 * k] | data[2 * k + 1] << 8);
    };
    std::wstring out;
    out.reserve(count);
    for (size_t i = 0; i < count;) {
        char32_t c = unitAt(i++);
        if (IsHighSurrogate(c) && i < count && IsLowSurrogate(unitAt(i)))
            c = 0x10000 + ((c - 0xD800) << 10) + (unitAt(i++) - 0xDC00);
        AppendCodePoint(out, c); // a lone surrogate becomes U+FFFD there
    }
    return out;
}

} // namespace Utf
