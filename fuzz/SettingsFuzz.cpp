// The settings-file reader behind MString::LOAD_INI_STRING. Any bytes: whatever it finds is a
// trimmed value of one line. Files written from entries drawn from the input, in UTF-16LE,
// UTF-8 or plain text, with blank lines, comments, padding and either line end: every key
// gives the value of its first occurrence, whatever the letter case it is asked with.
#include <cstdint>
#include <cwctype>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FuzzSupport.h"
#include "SettingsText.h"
#include "StdBase.h"

namespace {

using KelSDK::FileIO::DecodeSettingsText;
using KelSDK::FileIO::FindSettingsValue;

const std::wstring kNameAlphabet = L"aBcXyz_ .-";
const std::wstring kValueAlphabet = L"aBc_ .=;[]\"";
// Beyond ASCII, for the files with a byte-order mark (a plain file is read in the C locale).
const std::wstring kWideLetters = L"\x00E9\x20AC\U0001F600";
const std::wstring kBlanks = L" \t";

void CheckAnyBytes(FuzzedDataProvider& input) {
    const std::wstring section = Fuzz::ConsumeText(input, kNameAlphabet + L"[]=;", 8);
    const std::wstring key = Fuzz::ConsumeText(input, kNameAlphabet + L"[]=;", 8);
    const std::vector<unsigned char> bytes = input.ConsumeRemainingBytes<unsigned char>();
    const std::wstring text = DecodeSettingsText(bytes.data(), bytes.size());
    std::wstring value;
    if (!FindSettingsValue(text, section.c_str(), key.c_str(), value))
        return;
    FUZZ_CHECK(value.find(L'\n') == std::wstring::npos);
    FUZZ_CHECK(value.empty() || !std::iswspace(value.front()));
    FUZZ_CHECK(value.empty() || !std::iswspace(value.back()));
    FUZZ_CHECK(text.find(value) != std::wstring::npos);
}

// A name or value as the reader gives it back: no blank at either end.
std::wstring Trimmed(std::wstring text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring::npos)
        return std::wstring();
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::wstring Lowered(std::wstring text) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(std::towlower(c));
    return text;
}

// The name with the case of its ASCII letters flipped where the input says so.
std::wstring Respelled(FuzzedDataProvider& input, std::wstring name) {
    for (wchar_t& c : name) {
        if (c < 0x80 && std::iswalpha(c) && input.ConsumeBool())
            c = static_cast<wchar_t>(std::iswupper(c) ? std::towlower(c) : std::towupper(c));
    }
    return name;
}

std::string Utf16Le(const std::wstring& text) {
    std::string bytes = "\xFF\xFE";
    const auto unit = [&bytes](unsigned value) {
        bytes += static_cast<char>(value & 0xFF);
        bytes += static_cast<char>(value >> 8);
    };
    for (const wchar_t c : text) {
        const auto value = static_cast<unsigned>(c);
        if (value > 0xFFFF) {
            unit(0xD800 + ((value - 0x10000) >> 10));
            unit(0xDC00 + ((value - 0x10000) & 0x3FF));
        } else {
            unit(value);
        }
    }
    return bytes;
}

void CheckWrittenFile(FuzzedDataProvider& input) {
    const int encoding = input.ConsumeIntegralInRange(0, 2); // UTF-16LE, UTF-8, plain ASCII
    const std::wstring letters = encoding == 2 ? L"" : kWideLetters;
    const auto name = [&] {
        std::wstring text = Trimmed(Fuzz::ConsumeText(input, kNameAlphabet + letters, 8, true));
        return text.empty() ? std::wstring(L"n") : text;
    };
    const auto pad = [&] { return std::wstring(input.ConsumeIntegralInRange(0, 2), L' '); };
    const std::wstring lineEnd = input.ConsumeBool() ? L"\r\n" : L"\n";

    std::map<std::pair<std::wstring, std::wstring>, std::wstring> firstValues;
    std::vector<std::pair<std::wstring, std::wstring>> asked;
    std::wstring text, section;
    const int lines = input.ConsumeIntegralInRange(0, 12);
    for (int k = 0; k < lines; ++k) {
        switch (input.ConsumeIntegralInRange(0, 5)) {
        case 0:
            section = name();
            text += pad() + L"[" + pad() + section + pad() + L"]" + pad();
            break;
        case 1:
            text += pad() + (input.ConsumeBool() ? L"; comment = x" : L"");
            break;
        default: {
            const std::wstring key = name();
            const std::wstring value =
                Trimmed(Fuzz::ConsumeText(input, kValueAlphabet + letters, 12, true));
            text += pad() + key + pad() + L"=" + pad() + value + pad();
            if (!section.empty()) {
                firstValues.emplace(std::make_pair(Lowered(section), Lowered(key)), value);
                asked.emplace_back(section, key);
            }
        }
        }
        text += lineEnd;
    }
    const std::string bytes = encoding == 0   ? Utf16Le(text)
                              : encoding == 1 ? "\xEF\xBB\xBF" + StdBase::ConvertUnicodeToUtf8(text)
                                              : StdBase::ConvertUnicodeToUtf8(text);
    const std::wstring decoded =
        DecodeSettingsText(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    FUZZ_CHECK(decoded == text);
    asked.emplace_back(name(), name()); // perhaps missing
    for (const auto& [askedSection, askedKey] : asked) {
        const std::wstring spelledSection = Respelled(input, askedSection);
        const std::wstring spelledKey = Respelled(input, askedKey);
        std::wstring value = L"unchanged";
        const bool found =
            FindSettingsValue(decoded, spelledSection.c_str(), spelledKey.c_str(), value);
        const auto expected = firstValues.find({Lowered(askedSection), Lowered(askedKey)});
        FUZZ_CHECK(found == (expected != firstValues.end()));
        FUZZ_CHECK(value == (found ? expected->second : L"unchanged"));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    if (input.ConsumeBool())
        CheckAnyBytes(input);
    else
        CheckWrittenFile(input);
    return 0;
}
