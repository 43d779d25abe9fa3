#include "StdBase.h"

namespace StdBase {

namespace {

bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

} // namespace

std::string ConvertUnicodeToUtf8(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        // Natively wchar_t is signed: negative values land above 0x10FFFF and are replaced.
        char32_t c = static_cast<char32_t>(text[i]);
        if (sizeof(wchar_t) == 2 && c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size()) {
            const char32_t low = static_cast<char32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if (c > 0x10FFFF || IsSurrogate(c))
            c = 0xFFFD;
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

} // namespace StdBase
