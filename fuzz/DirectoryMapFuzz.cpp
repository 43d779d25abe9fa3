// The map-file reader of MDirectoryWithMap. Any bytes: the read succeeds or fails with 1017 or
// 30, a failure leaves the map empty, and a success maps no short name twice, with names and
// mapped names trimmed and never empty. Maps drawn from the input, written entry by entry and
// read back, come back the same (an entry whose line reads as "[...]" excepted).
#include <cstdint>
#include <cstdio>
#include <cwctype>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "MDirectoryWithMap.h"

namespace {

// The reader's special characters, and ASCII only: the streams use the C locale here.
const std::wstring kAlphabet = L"aB-> []\t\r\n.z";

bool Trimmed(const std::wstring& text) {
    return !text.empty() && !std::iswspace(text.front()) && !std::iswspace(text.back()) &&
           text.find(L'\n') == std::wstring::npos;
}

std::wstring Lowered(std::wstring text) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(std::towlower(c));
    return text;
}

FILE* StreamOf(const std::string& bytes) {
    FILE* file = std::tmpfile();
    if (file && !bytes.empty())
        std::fwrite(bytes.data(), 1, bytes.size(), file);
    if (file)
        std::rewind(file);
    return file;
}

void CheckAnyBytes(FuzzedDataProvider& input) {
    FILE* file = StreamOf(input.ConsumeRemainingBytesAsString());
    if (!file)
        return;
    MDirectoryWithMap directory;
    const unsigned long result = directory.ReadMapStream(file);
    std::fclose(file);
    FUZZ_CHECK(result == 0 || result == 1017 || result == 30);
    const CMapStringToString& map = directory.GetMap();
    FUZZ_CHECK(result == 0 || map.IsEmpty());
    std::map<std::wstring, std::wstring> owners;
    CString key, value;
    for (POSITION at = map.GetStartPosition(); at;) {
        map.GetNextAssoc(at, key, value);
        const std::wstring name = key.GetString(), mapped = value.GetString();
        Fuzz::Context() = name + L"->" + mapped;
        FUZZ_CHECK(Trimmed(name) && Trimmed(mapped));
        FUZZ_CHECK(name.find(L"->") == std::wstring::npos);
        const auto [owner, added] = owners.emplace(Lowered(mapped), Lowered(name));
        FUZZ_CHECK(added || owner->second == Lowered(name));
    }
}

void CheckWrittenMap(FuzzedDataProvider& input) {
    std::map<std::wstring, std::wstring> expected;
    std::set<std::wstring> names, mappedNames;
    FILE* file = std::tmpfile();
    if (!file)
        return;
    const int count = input.ConsumeIntegralInRange(0, 20);
    for (int i = 0; i < count; ++i) {
        std::wstring name = Fuzz::ConsumeText(input, kAlphabet, 16, true);
        std::wstring mapped = Fuzz::ConsumeText(input, kAlphabet, 16, true);
        // What the format can hold: trimmed, one line, no arrow in the name, each unique.
        if (!Trimmed(name) || !Trimmed(mapped) || name.find(L"->") != std::wstring::npos ||
            name.find(L'\r') != std::wstring::npos || mapped.find(L'\r') != std::wstring::npos ||
            !names.insert(Lowered(name)).second || !mappedNames.insert(Lowered(mapped)).second)
            continue;
        FUZZ_CHECK(MDirectoryWithMap::_WriteMapFileEntry(file, name.c_str(), mapped.c_str()) == 0);
        if (!(name.front() == L'[' && mapped.back() == L']'))
            expected[name] = mapped;
    }
    std::rewind(file);
    MDirectoryWithMap directory;
    FUZZ_CHECK(directory.ReadMapStream(file) == 0);
    std::fclose(file);
    FUZZ_CHECK(directory.GetMap().GetCount() == static_cast<INT_PTR>(expected.size()));
    for (const auto& [name, mapped] : expected) {
        CString found;
        FUZZ_CHECK(directory.Name2MappedName(name.c_str(), &found) && found == mapped.c_str());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    (input.ConsumeBool() ? CheckAnyBytes : CheckWrittenMap)(input);
    return 0;
}
