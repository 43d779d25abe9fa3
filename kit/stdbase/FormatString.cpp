#include "StdBase.h"

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cwchar>
#include <vector>

namespace StdBase {

namespace {

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The length modifier of one conversion, as far as the choice between narrow and wide text
// for %s and %c depends on it.
enum class TextWidth { Default, Narrow, Wide, Invalid };

// Rewrites a format in the platform's conventions (%s wide, %S narrow, I64, ...) into the C99
// conventions of vswprintf (%ls wide, %s narrow, ll, ...). A conversion it does not know is
// escaped so that it reaches the output literally instead of reading an argument.
std::wstring TranslateFormat(const wchar_t* format) {
    std::wstring out;
    const wchar_t* p = format;
    while (*p != L'\0') {
        if (*p != L'%') {
            out += *p++;
            continue;
        }
        const wchar_t* start = p++;
        if (*p == L'%') {
            out += L"%%";
            ++p;
            continue;
        }
        std::wstring spec = L"%";
        while (*p == L'-' || *p == L'+' || *p == L' ' || *p == L'#' || *p == L'0')
            spec += *p++;
        if (*p == L'*')
            spec += *p++;
        while (IsDigit(*p))
            spec += *p++;
        if (*p == L'.') {
            spec += *p++;
            if (*p == L'*')
                spec += *p++;
            while (IsDigit(*p))
                spec += *p++;
        }

        std::wstring length;
        TextWidth text = TextWidth::Default;
        if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4') {
            length = L"ll";
            text = TextWidth::Invalid;
            p += 3;
        } else if (p[0] == L'I' && p[1] == L'3' && p[2] == L'2') {
            text = TextWidth::Invalid;
            p += 3;
        } else if (*p == L'I') {
            // Pointer-sized on the platform: size_t.
            length = L"z";
            text = TextWidth::Invalid;
            ++p;
        } else if (p[0] == L'h' && p[1] == L'h') {
            length = L"hh";
            text = TextWidth::Invalid;
            p += 2;
        } else if (*p == L'h') {
            length = L"h";
            text = TextWidth::Narrow;
            ++p;
        } else if (p[0] == L'l' && p[1] == L'l') {
            length = L"ll";
            text = TextWidth::Invalid;
            p += 2;
        } else if (*p == L'l' || *p == L'w') {
            length = L"l";
            text = TextWidth::Wide;
            ++p;
        } else if (*p == L'z' || *p == L'j' || *p == L't' || *p == L'L') {
            length = *p++;
            text = TextWidth::Invalid;
        }

        const wchar_t conversion = *p;
        switch (conversion) {
        case L'd':
        case L'i':
        case L'u':
        case L'o':
        case L'x':
        case L'X':
        case L'e':
        case L'E':
        case L'f':
        case L'F':
        case L'g':
        case L'G':
        case L'a':
        case L'A':
            out += spec + length + conversion;
            ++p;
            continue;
        case L'p':
            out += spec + L'p';
            ++p;
            continue;
        case L'n':
            // Writing through an argument is refused, as the platform does by default; the
            // pointer is still consumed so that the later arguments stay in place.
            out += L"%.0s";
            ++p;
            continue;
        case L's':
        case L'S':
        case L'c':
        case L'C':
            if (text != TextWidth::Invalid) {
                const bool upper = conversion == L'S' || conversion == L'C';
                const bool wide = text == TextWidth::Wide || (text == TextWidth::Default && !upper);
                out += spec + (wide ? L"l" : L"") + (upper ? wchar_t(conversion + 32) : conversion);
                ++p;
                continue;
            }
            break;
        default:
            break;
        }
        // Unknown conversion: everything from the '%' up to here appears as written.
        out += L'%';
        out.append(start, p);
        if (*p != L'\0')
            out += *p++;
    }
    return out;
}

} // namespace

std::wstring VFormatString(const wchar_t* format, va_list args) {
    if (format == nullptr)
        return std::wstring();
    const std::wstring c99 = TranslateFormat(format);
    std::vector<wchar_t> buffer(256);
    for (;;) {
        va_list attempt;
        va_copy(attempt, args);
        errno = 0;
        const int written = vswprintf(buffer.data(), buffer.size(), c99.c_str(), attempt);
        va_end(attempt);
        if (written >= 0 && static_cast<size_t>(written) < buffer.size())
            return std::wstring(buffer.data(), static_cast<size_t>(written));
        // A negative result means either "too small" or a real failure (an unconvertible
        // narrow text); only the latter sets errno. mingw reports the needed length instead.
        const bool failed = written < 0 && errno != 0;
        if (failed || buffer.size() >= static_cast<size_t>(INT_MAX))
            return std::wstring();
        size_t next = written >= 0 ? static_cast<size_t>(written) + 1 : buffer.size() * 2;
        buffer.resize(next < static_cast<size_t>(INT_MAX) ? next : static_cast<size_t>(INT_MAX));
    }
}

std::wstring FormatString(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    std::wstring result = VFormatString(format, args);
    va_end(args);
    return result;
}

} // namespace StdBase
