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

namespace {

// Decodes the sequence that starts at s[i] and moves i past it. A malformed sequence is taken
// one maximal subpart at a time (the Unicode recommended practice, which the system's own
// conversion follows): the bytes that can still start a well-formed sequence are taken
// together and give false, and the first byte that cannot continue it starts anew, so a broken
// character never swallows the one after it.
bool NextUtf8(const unsigned char* s, size_t size, size_t& i, char32_t& c) {
    const unsigned char lead = s[i++];
    if (lead < 0x80) {
        c = lead;
        return true;
    }
    // The lead gives the length and the range of the second byte, which keeps out overlong
    // forms (E0, F0), surrogates (ED) and values above U+10FFFF (F4). C0, C1 and leads above
    // F4 start nothing.
    size_t extra = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        extra = 1;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        extra = 2;
        low = lead == 0xE0 ? 0xA0 : low;
        high = lead == 0xED ? 0x9F : high;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        extra = 3;
        low = lead == 0xF0 ? 0x90 : low;
        high = lead == 0xF4 ? 0x8F : high;
    }
    c = lead & (0x3F >> extra);
    size_t taken = 0;
    while (taken < extra && i < size && s[i] >= low && s[i] <= high) {
        c = (c << 6) | (s[i++] & 0x3F);
        ++taken;
        low = 0x80;
        high = 0xBF;
    }
    return extra != 0 && taken == extra;
}

} // namespace

std::wstring ConvertUtf8ToUnicode(const char* data, size_t size) {
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    std::wstring out;
    out.reserve(size);
    for (size_t i = 0; i < size;) {
        char32_t c = 0;
        AppendCodePoint(out, NextUtf8(s, size, i, c) ? c : REPLACEMENT);
    }
    return out;
}

std::string ConvertUnicodeToUtf16Le(const std::wstring& text) {
    std::string out;
    out.reserve(2 * text.size());
    const auto unit = [&out](char32_t value) {
        out += static_cast<char>(value & 0xFF);
        out += static_cast<char>((value >> 8) & 0xFF);
    };
    for (const wchar_t c : text) {
        char32_t value = static_cast<char32_t>(c);
        if (sizeof(wchar_t) == 2) {
            unit(value);
        } else if (value > 0x10FFFF) {
            unit(REPLACEMENT);
        } else if (value > 0xFFFF) {
            value -= 0x10000;
            unit(0xD800 + (value >> 10));
            unit(0xDC00 + (value & 0x3FF));
        } else {
            unit(value);
        }
    }
    return out;
}

bool IsUtf8(const char* data, size_t size) {
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    for (size_t i = 0; i < size;) {
        char32_t c = 0;
        if (!NextUtf8(s, size, i, c))
            return false;
    }
    return true;
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
    if (size % 2 != 0)
        AppendCodePoint(out, REPLACEMENT); // a unit cut short
    return out;
}

} // namespace StdBase
