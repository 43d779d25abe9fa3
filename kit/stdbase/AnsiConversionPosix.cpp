// Conversions in the current C locale, for systems without code pages.
#include "StdBase.h"

#include <climits>
#include <cwchar>

namespace StdBase {

std::wstring ConvertAnsiToUnicode(const std::string& text) {
    std::wstring result;
    result.reserve(text.size());
    std::mbstate_t state{};
    const char* p = text.data();
    size_t left = text.size();
    while (left > 0) {
        wchar_t c = 0;
        const size_t used = std::mbrtowc(&c, p, left, &state);
        if (used == static_cast<size_t>(-1) || used == static_cast<size_t>(-2)) {
            // An invalid or truncated sequence costs one byte, as on the platform.
            result += L'\xFFFD';
            state = std::mbstate_t{};
            ++p;
            --left;
            continue;
        }
        result += c;
        const size_t step = used == 0 ? 1 : used; // 0 means an embedded NUL
        p += step;
        left -= step;
    }
    return result;
}

std::string ConvertUnicodeToAnsi(const std::wstring& text) {
    std::string result;
    result.reserve(text.size());
    std::mbstate_t state{};
    char bytes[MB_LEN_MAX];
    for (wchar_t c : text) {
        const size_t count = std::wcrtomb(bytes, c, &state);
        if (count == static_cast<size_t>(-1)) {
            result += '?';
            state = std::mbstate_t{};
            continue;
        }
        result.append(bytes, count);
    }
    return result;
}

} // namespace StdBase
