// MIniFile against the system's profile functions, both ways, in the three encodings they
// read: hand-written files read alike, and what MIniFile wrote GetPrivateProfileStringW and
// GetPrivateProfileIntW read.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "IniSamples.h"
#include "MIniFile.h"
#include "StdBase.h"
#include "TempFolder.h"

namespace {

using Encoding = MIniFile::Encoding;

const std::pair<Encoding, const char*> kEncodings[] = {
    {Encoding::Ansi, "ANSI"},
    {Encoding::Utf8Signature, "UTF-8 with signature"},
    {Encoding::Utf16Le, "UTF-16LE"}};

std::string Encoded(const std::wstring& text, Encoding encoding) {
    switch (encoding) {
    case Encoding::Utf16Le:
        return "\xFF\xFE" + StdBase::ConvertUnicodeToUtf16Le(text);
    case Encoding::Utf8Signature:
        return "\xEF\xBB\xBF" + StdBase::ConvertUnicodeToUtf8(text);
    default:
        return StdBase::ConvertUnicodeToAnsi(text);
    }
}

// Written by MIniFile into the hand-written file and read by the system: a value replaced in
// place, names with blanks or in another case, values with blanks, quotes, '=' and ';', text
// beyond ASCII, a key after a last line without its line end, one before the first header.
const IniEntry kEntries[] = {{L"SP", L"q", L"-20"},
                             {L" Window ", L" Top ", L" spaced value "},
                             {L"window", L"\u00e9t\u00e9", L"caf\u00e9 \u00e0 la cr\u00e8me"},
                             {L"Empty", L"quotes", L"\"in quotes\""},
                             {L"last", L"after", L"the last line"},
                             {L"New", L"k", L"v=w;x"},
                             {L"", L"top", L"before the first header"}};

class MIniFileSystemTest : public TempFolderTest {
protected:
    void SetUp() override {
        TempFolderTest::SetUp();
        m_path = Path(L"profile.ini");
    }

    // The system's value, read afresh (its cache of the file is flushed first).
    std::wstring System(const wchar_t* section, const wchar_t* key) const {
        WritePrivateProfileStringW(nullptr, nullptr, nullptr, m_path.c_str());
        wchar_t value[512];
        GetPrivateProfileStringW(section, key, kMissing, value, 512, m_path.c_str());
        return value;
    }

    // A list of names as the system gives it (NUL-separated), each name once.
    std::vector<std::wstring> SystemNames(const wchar_t* section) const {
        WritePrivateProfileStringW(nullptr, nullptr, nullptr, m_path.c_str());
        wchar_t names[4096];
        const DWORD length =
            GetPrivateProfileStringW(section, nullptr, L"", names, 4096, m_path.c_str());
        std::vector<std::wstring> list;
        for (const wchar_t* name = names; name < names + length && *name;
             name += wcslen(name) + 1) {
            bool seen = false;
            for (const std::wstring& known : list)
                seen =
                    seen || CompareStringOrdinal(known.c_str(), -1, name, -1, TRUE) == CSTR_EQUAL;
            if (!seen)
                list.emplace_back(name);
        }
        return list;
    }

    // The same sections, keys and values as the system lists.
    void ExpectSameAsSystem(const MIniFile& ini) const {
        EXPECT_EQ(SystemNames(nullptr), ini.GetSections());
        for (const std::wstring& section : ini.GetSections()) {
            SCOPED_TRACE(section);
            EXPECT_EQ(SystemNames(section.c_str()), ini.GetKeys(section));
            for (const std::wstring& key : ini.GetKeys(section))
                EXPECT_EQ(System(section.c_str(), key.c_str()), ini.GetString(section, key)) << key;
        }
    }

    MIniFile Loaded() const {
        MIniFile ini;
        EXPECT_TRUE(ini.Load(m_path));
        return ini;
    }

    std::wstring m_path;
};

} // namespace

// In each encoding: a hand-written file read as the system reads it; then edited, saved and
// read by the system as MIniFile reads it, the deleted key and the lines left alone included.
TEST_F(MIniFileSystemTest, ReadsAndWritesAsTheSystem) {
    for (const auto& [encoding, name] : kEncodings) {
        SCOPED_TRACE(name);
        WriteRaw(L"profile.ini", Encoded(kHandWritten, encoding));
        MIniFile ini = Loaded();
        EXPECT_EQ(encoding, ini.GetEncoding());
        for (const IniEntry& probe : kHandWrittenValues)
            EXPECT_EQ(System(probe.section, probe.key),
                      ini.GetString(probe.section, probe.key, kMissing))
                << probe.section << L"/" << probe.key;
        for (const IniInt& probe : kHandWrittenInts)
            EXPECT_EQ(
                static_cast<int>(GetPrivateProfileIntW(L"Last", probe.key, -1, m_path.c_str())),
                ini.GetInt(L"Last", probe.key, -1))
                << probe.key;
        ExpectSameAsSystem(ini);

        for (const IniEntry& entry : kEntries)
            ASSERT_TRUE(ini.SetString(entry.section, entry.key, entry.value)) << entry.key;
        ASSERT_TRUE(ini.DeleteKey(L"sp", L"HALF"));
        ASSERT_TRUE(ini.Save());
        const MIniFile reread = Loaded();
        EXPECT_EQ(encoding, reread.GetEncoding());
        for (const IniEntry& entry : kEntries)
            EXPECT_EQ(entry.value, System(entry.section, entry.key)) << entry.key;
        ExpectSameAsSystem(reread);
    }
}
