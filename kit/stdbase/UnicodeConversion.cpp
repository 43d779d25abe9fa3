// Unicode encodings independent of any locale: UTF-8 and UTF-16LE bytes to wide text (UTF-16 on
// Windows, UTF-32 elsewhere) and wide text to UTF-8.
#include "StdBase.h"

namespace StdBase {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

bool IsHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}
char32_t CombineSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

void AppendCodePoint(std::wstring& out, char32_t c) {
    if (c > 0x10FFFF || IsSurrogate(c))
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

std::string ConvertUnicodeToUtf8(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        // Natively wchar_t is signed: negative values land above 0x10FFFF and are replaced.
        char32_t c = static_cast<char32_t>(text[i]);
        if (sizeof(wchar_t) == 2 && IsHighSurrogate(c) && i + 1 < text.size()) {
            const char32_t low = static_cast<char32_t>(text[i + 1]);
            if (IsLowSurrogate(low)) {
                c = CombineSurrogates(c, low);
                ++i;
            }
        }
        if (c > 0x10FFFF || IsSurrogate(c))
            c = REPLACEMENT;
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        const int extra = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        out += static_cast<char>(((0xF0 << (3 - extra)) & 0xFF) | (c >> (6 * extra)));
        for (int k = extra - 1; k >= 0; --k)
            out += static_cast<char>(0x80 | ((c >> (6 * k)) & 0x3F));
    }
    return out;
}

std::wstring ConvertUtf8ToUnicode(const char* data, size_t size) {
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

std::wstring ConvertUtf16LeToUnicode(const unsigned char* data, size_t size) {
    const size_t count = size / 2;
    auto unitAt = [data](size_t k) {
        return static_cast<char32_t>(data[2 * k] | data[2 * k + 1] << 8);
    };
    std::wstring out;
    out.reserve(count);
    for (size_t i = 0; i < count;) {
        char32_t c = unitAt(i++);
        if (IsHighSurrogate(c) && i < count && IsLowSurrogate(unitAt(i)))
            c = CombineSurrogates(c, unitAt(i++));
        AppendCodePoint(out, c); // a lone surrogate becomes U+FFFD there
    }
    return out;
}

} // namespace StdBase
