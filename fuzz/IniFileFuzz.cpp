// MIniFile on any bytes: written back and parsed again, the file has the same text, sections,
// keys and values, and writing that again gives the same bytes. Edits drawn from the input
// (set, delete a key, delete a section) are checked against a model of what they promise: a
// set key reads back its value, a deleted name is gone, and every other key keeps its value;
// after each edit the written file parses back to the same content.
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FuzzSupport.h"
#include "MIniFile.h"
#include "miscstr.h"

namespace {

// Names and values with the characters the parser treats specially.
const std::wstring kAlphabet = L"aBc =;[]\"'\t\r\n\x1A\u00e9";

using Content = std::map<std::pair<std::wstring, std::wstring>, std::wstring>;

// Every section's every listed key with its value, by folded names.
Content Snapshot(const MIniFile& ini) {
    Content content;
    std::vector<std::wstring> sections = ini.GetSections();
    sections.emplace_back();
    for (const std::wstring& section : sections) {
        for (const std::wstring& key : ini.GetKeys(section)) {
            std::wstring value;
            FUZZ_CHECK(ini.GetString(section, key, value));
            content[{miscstr::ToLower(section), miscstr::ToLower(key)}] = value;
        }
    }
    return content;
}

// What was written parses back to the same text and content, and writes the same bytes.
void CheckRoundTrip(const MIniFile& ini) {
    const std::string bytes = ini.GetBytes();
    MIniFile again;
    again.Parse(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    FUZZ_CHECK(again.GetText() == ini.GetText());
    FUZZ_CHECK(again.GetSections() == ini.GetSections());
    FUZZ_CHECK(Snapshot(again) == Snapshot(ini));
    FUZZ_CHECK(again.GetBytes() == bytes);
}

std::wstring Trimmed(const std::wstring& name) {
    const std::size_t first = name.find_first_not_of(L" \t\n\v\f\r\x1A");
    if (first == std::wstring::npos)
        return std::wstring();
    return name.substr(first, name.find_last_not_of(L" \t\n\v\f\r\x1A") - first + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    const int edits = input.ConsumeIntegralInRange(0, 4);
    struct Edit {
        int kind;
        std::wstring section, key, value;
    };
    std::vector<Edit> planned;
    for (int i = 0; i < edits; ++i) {
        Edit edit;
        edit.kind = input.ConsumeIntegralInRange(0, 2);
        // Valid Unicode only: text that is none cannot be written unchanged in any encoding.
        edit.section = Fuzz::ConsumeText(input, kAlphabet, 6, true);
        edit.key = Fuzz::ConsumeText(input, kAlphabet, 6, true);
        edit.value = Fuzz::ConsumeText(input, kAlphabet, 8, true);
        planned.push_back(edit);
    }
    const std::vector<unsigned char> bytes = input.ConsumeRemainingBytes<unsigned char>();
    MIniFile ini;
    ini.Parse(bytes.data(), bytes.size());
    Fuzz::Context() = ini.GetText();
    FUZZ_CHECK(!ini.IsModified());
    CheckRoundTrip(ini);

    for (const Edit& edit : planned) {
        Content expected = Snapshot(ini);
        const std::wstring section = miscstr::ToLower(Trimmed(edit.section));
        const std::wstring key = miscstr::ToLower(Trimmed(edit.key));
        if (edit.kind == 0) {
            if (!ini.SetString(edit.section, edit.key, edit.value)) {
                FUZZ_CHECK(Snapshot(ini) == expected);
                continue;
            }
            std::wstring value;
            FUZZ_CHECK(ini.GetString(edit.section, edit.key, value));
            FUZZ_CHECK(value == edit.value);
            expected[{section, key}] = edit.value;
        } else if (edit.kind == 1) {
            const bool had = ini.HasKey(edit.section, edit.key);
            FUZZ_CHECK(ini.DeleteKey(edit.section, edit.key) == had);
            FUZZ_CHECK(!ini.HasKey(edit.section, edit.key));
            expected.erase({section, key});
        } else {
            const bool had = ini.HasSection(edit.section);
            FUZZ_CHECK(ini.DeleteSection(edit.section) == had);
            FUZZ_CHECK(!ini.HasSection(edit.section));
            for (auto entry = expected.begin(); entry != expected.end();)
                entry = entry->first.first == section ? expected.erase(entry) : std::next(entry);
        }
        // Keys of a later section of the same name come to light when the first one goes.
        const Content now = Snapshot(ini);
        for (const auto& [name, value] : expected) {
            const auto found = now.find(name);
            FUZZ_CHECK(found != now.end());
            FUZZ_CHECK(found->second == value);
        }
        CheckRoundTrip(ini);
    }
    return 0;
}
