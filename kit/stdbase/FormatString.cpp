#include "StdBase.h"
#include "FormatTranslation.h"

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

struct LengthModifier {
    const wchar_t* platform;
    const wchar_t* c99;
    TextWidth text;
    // The numeric conversions it applies to; with any other, vswprintf's behaviour would be
    // undefined (%Ld, %hf), so such a conversion counts as not known.
    const wchar_t* numbers;
};

constexpr const wchar_t* kIntegers = L"diouxX";
constexpr const wchar_t* kFloatingPoint = L"eEfFgGaA";
constexpr const wchar_t* kNumbers = L"diouxXeEfFgGaA";

// Longer spellings first, so that "I64" is not taken for "I" and "ll" not for "l".
const LengthModifier lengthModifiers[] = {
    {L"I64", L"ll", TextWidth::Invalid, kIntegers},   {L"I32", L"", TextWidth::Invalid, kIntegers},
    {L"I", L"z", TextWidth::Invalid, kIntegers}, // pointer-sized
    {L"hh", L"hh", TextWidth::Invalid, kIntegers},    {L"h", L"h", TextWidth::Narrow, kIntegers},
    {L"ll", L"ll", TextWidth::Invalid, kIntegers},    {L"l", L"l", TextWidth::Wide, kNumbers},
    {L"w", L"l", TextWidth::Wide, kNumbers},          {L"z", L"z", TextWidth::Invalid, kIntegers},
    {L"j", L"j", TextWidth::Invalid, kIntegers},      {L"t", L"t", TextWidth::Invalid, kIntegers},
    {L"L", L"L", TextWidth::Invalid, kFloatingPoint},
};
const LengthModifier noModifier = {L"", L"", TextWidth::Default, kNumbers};

bool IsOneOf(wchar_t c, const wchar_t* set) {
    return c != L'\0' && std::wcschr(set, c) != nullptr;
}

// One conversion (its flags, width and precision already collected) in C99 spelling, or an empty
// string for a conversion that is not known.
std::wstring TranslateConversion(const std::wstring& flags, const LengthModifier& modifier,
                                 wchar_t conversion) {
    if (IsOneOf(conversion, modifier.numbers))
        return flags + modifier.c99 + conversion;
    if (IsOneOf(conversion, kNumbers))
        return std::wstring();
    if (conversion == L'p')
        return flags + L'p';
    if (conversion == L'n') {
        // Writing through an argument is refused, as the platform does by default; the
        // pointer is still consumed, and so is each '*' width or precision, so that the later
        // arguments stay in place.
        std::wstring skipped;
        for (const wchar_t c : flags) {
            if (c == L'*')
                skipped += L"%.0s";
        }
        return skipped + L"%.0s";
    }
    const TextWidth text = modifier.text;
    if (IsOneOf(conversion, L"sScC") && text != TextWidth::Invalid) {
        const bool upper = conversion == L'S' || conversion == L'C';
        const bool wide = text == TextWidth::Wide || (text == TextWidth::Default && !upper);
        return flags + (wide ? L"l" : L"") +
               static_cast<wchar_t>(upper ? conversion + (L'a' - L'A') : conversion);
    }
    return std::wstring();
}

} // namespace

// A conversion it does not know is escaped so that it reaches the output literally instead of
// reading an argument.
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
        std::wstring flags = L"%";
        while (IsOneOf(*p, L"-+ #0"))
            flags += *p++;
        // A width or precision is a '*' or digits, never both ("%*5d" is not known).
        const auto number = [&] {
            if (*p == L'*')
                flags += *p++;
            else
                while (IsDigit(*p))
                    flags += *p++;
        };
        number();
        if (*p == L'.') {
            flags += *p++;
            number();
        }

        const LengthModifier* modifier = &noModifier;
        for (const LengthModifier& candidate : lengthModifiers) {
            const size_t size = std::wcslen(candidate.platform);
            if (std::wcsncmp(p, candidate.platform, size) == 0) {
                modifier = &candidate;
                p += size;
                break;
            }
        }

        const std::wstring translated = TranslateConversion(flags, *modifier, *p);
        if (!translated.empty()) {
            out += translated;
            ++p;
            continue;
        }
        // Unknown conversion: everything from the '%' up to here appears as written, the
        // character that ended it too ("%-%" included: its second '%' is escaped as well).
        out += L'%';
        out.append(start, p);
        if (*p == L'%')
            out += L'%';
        if (*p != L'\0')
            out += *p++;
    }
    return out;
}

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
