// MIniFile against the system's profile functions, both ways, in the three encodings they
// read: what WritePrivateProfileStringW wrote MIniFile reads, and what MIniFile wrote
// GetPrivateProfileStringW and GetPrivateProfileIntW read.
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

// Written by either side and read by the other: names with blanks or in another case, values
// with blanks, quotes, '=' and ';', text beyond ASCII, a key before the first header.
const IniEntry kEntries[] = {{L"Window", L"left", L"-20"},
                             {L" Window ", L" Top ", L" spaced value "},
                             {L"window", L"\u00e9t\u00e9", L"caf\u00e9 \u00e0 la cr\u00e8me"},
                             {L"Empty", L"quotes", L"\"in quotes\""},
                             {L"Paths", L"after", L"the last line"},
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

TEST_F(MIniFileSystemTest, ReadsHandWrittenFilesAsTheSystem) {
    for (const auto& [encoding, name] : kEncodings) {
        SCOPED_TRACE(name);
        WriteRaw(L"profile.ini", Encoded(kHandWritten, encoding));
        const MIniFile ini = Loaded();
        EXPECT_EQ(encoding, ini.GetEncoding());
        for (const IniEntry& probe : kHandWrittenValues) {
            SCOPED_TRACE(std::wstring(probe.section) + L"/" + probe.key);
            EXPECT_EQ(probe.value, System(probe.section, probe.key));
            EXPECT_EQ(probe.value, ini.GetString(probe.section, probe.key, kMissing));
        }
        for (const IniInt& probe : kHandWrittenInts)
            EXPECT_EQ(probe.value, static_cast<int>(GetPrivateProfileIntW(L"Last", probe.key, -1,
                                                                          m_path.c_str())))
                << probe.key;
        ExpectSameAsSystem(ini);
    }
}

TEST_F(MIniFileSystemTest, ReadsWhatTheSystemWrote) {
    for (const auto& [encoding, name] : kEncodings) {
        SCOPED_TRACE(name);
        // The system keeps a file's encoding, which its first bytes give; an empty file is ANSI.
        WriteRaw(L"profile.ini", Encoded(L"", encoding));
        // A key replaced by the first entry, then a key and a section deleted again.
        ASSERT_TRUE(WritePrivateProfileStringW(L"WINDOW", L"LEFT", L"10", m_path.c_str()));
        for (const IniEntry& entry : kEntries)
            ASSERT_TRUE(
                WritePrivateProfileStringW(entry.section, entry.key, entry.value, m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Window", L"gone", L"x", m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Window", L"gone", nullptr, m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Fourth", L"x", L"y", m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Fourth", nullptr, nullptr, m_path.c_str()));
        const MIniFile ini = Loaded();
        EXPECT_EQ(encoding, ini.GetEncoding());
        ExpectSameAsSystem(ini);
        EXPECT_EQ(L"-20", ini.GetString(L"window", L"left"));
    }
}

TEST_F(MIniFileSystemTest, TheSystemReadsWhatMIniFileWrote) {
    const std::wstring start =
        L"; settings\r\n"
        L"[ Window ]\r\n  Left =  10\r\nleft=duplicate\r\nTitle=\u00e9t\u00e9\r\n\r\n"
        L"[Empty]\r\n"
        L"[Paths]\r\nhome = C:\\Users ; not a comment\r\nlast=no line end";
    for (const auto& [encoding, name] : kEncodings) {
        SCOPED_TRACE(name);
        WriteRaw(L"profile.ini", Encoded(start, encoding));
        MIniFile ini = Loaded();
        for (const IniEntry& entry : kEntries)
            ASSERT_TRUE(ini.SetString(entry.section, entry.key, entry.value)) << entry.key;
        ASSERT_TRUE(ini.DeleteKey(L"paths", L"HOME"));
        ASSERT_TRUE(ini.Save());

        const MIniFile reread = Loaded();
        EXPECT_EQ(encoding, reread.GetEncoding());
        for (const IniEntry& entry : kEntries)
            EXPECT_EQ(entry.value, System(entry.section, entry.key)) << entry.key;
        EXPECT_EQ(kMissing, System(L"Paths", L"home"));
        EXPECT_EQ(L"no line end", System(L"Paths", L"last"));
        EXPECT_EQ(-20,
                  static_cast<int>(GetPrivateProfileIntW(L"Window", L"Left", 0, m_path.c_str())));
        ExpectSameAsSystem(reread);
        // Every line not changed is still there as it was.
        const std::wstring text = reread.GetText();
        for (const wchar_t* kept : {L"; settings\r\n[ Window ]\r\n  Left =  -20\r\n",
                                    L"left=duplicate\r\n", L"\r\n\r\n[Empty]\r\n"})
            EXPECT_NE(std::wstring::npos, text.find(kept)) << kept;
    }
}
