// StdBase's format translation on any format: read back by the C99 rules of vswprintf, every
// conversion of the result is complete, its length modifier suits its conversion (no undefined
// behaviour), and %n never appears. Only the translation runs, never printf.
#include <cstdint>
#include <string>
#include <string_view>

#include "FormatTranslation.h"
#include "FuzzSupport.h"

namespace {

// Characters of the platform's conversions, the percent sign weighted up.
const std::wstring kFormatAlphabet = L"%%%%%%-+ #0*.0123456789hlLwIjzt6432diouxXeEfFgGaAcCsSnp ";

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

bool StartsWith(std::wstring_view text, std::size_t at, std::wstring_view prefix) {
    return text.compare(at, prefix.size(), prefix) == 0;
}

// Reads `format` as vswprintf does and checks each conversion; `at` stands after its '%'.
void CheckConversion(std::wstring_view format, std::size_t& at) {
    FUZZ_CHECK(at < format.size()); // a lone '%' at the end
    if (format[at] == L'%') {
        ++at;
        return;
    }
    while (at < format.size() &&
           std::wstring_view(L"-+ #0").find(format[at]) != std::wstring_view::npos)
        ++at;
    const auto number = [&] {
        if (at < format.size() && format[at] == L'*')
            ++at;
        else
            while (at < format.size() && IsDigit(format[at]))
                ++at;
    };
    number();
    if (at < format.size() && format[at] == L'.') {
        ++at;
        number();
    }
    std::wstring_view length;
    for (const std::wstring_view modifier : {L"hh", L"h", L"ll", L"l", L"j", L"z", L"t", L"L"}) {
        if (StartsWith(format, at, modifier)) {
            length = modifier;
            break;
        }
    }
    at += length.size();
    FUZZ_CHECK(at < format.size());
    const wchar_t conversion = format[at++];
    FUZZ_CHECK(conversion != L'n');
    if (std::wstring_view(L"diouxX").find(conversion) != std::wstring_view::npos)
        FUZZ_CHECK(length != L"L");
    else if (std::wstring_view(L"eEfFgGaA").find(conversion) != std::wstring_view::npos)
        FUZZ_CHECK(length.empty() || length == L"l" || length == L"L");
    else if (conversion == L'c' || conversion == L's')
        FUZZ_CHECK(length.empty() || length == L"l");
    else
        FUZZ_CHECK(conversion == L'p' && length.empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    const std::wstring format = Fuzz::ConsumeText(input, kFormatAlphabet, 256);
    const std::wstring translated = StdBase::TranslateFormat(format.c_str());
    Fuzz::Context() = format + L" -> " + translated;
    for (std::size_t at = 0; at < translated.size();) {
        if (translated[at++] == L'%')
            CheckConversion(translated, at);
    }
    // Text outside conversions passes unchanged.
    if (format.find(L'%') == std::wstring::npos)
        FUZZ_CHECK(translated == format);
    return 0;
}
