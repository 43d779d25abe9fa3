// MIniFile against the system's profile functions, both ways, in the three encodings they
// read: what WritePrivateProfileStringW wrote MIniFile reads, and what MIniFile wrote
// GetPrivateProfileStringW and GetPrivateProfileIntW read.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MIniFile.h"
#include "TempFolder.h"

namespace {

using Encoding = MIniFile::Encoding;

const wchar_t kMissing[] = L"<missing>";

// The text in the encoding; ANSI text is kept to what code page 1252 has.
std::string Encoded(const std::wstring& text, Encoding encoding) {
    switch (encoding) {
    case Encoding::Utf16Le: // wchar_t is a UTF-16LE unit here
        return "\xFF\xFE" +
               std::string(reinterpret_cast<const char*>(text.data()), 2 * text.size());
    case Encoding::Utf8Signature: {
        std::string utf8(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                             nullptr, 0, nullptr, nullptr),
                         '\0');
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                            static_cast<int>(utf8.size()), nullptr, nullptr);
        return "\xEF\xBB\xBF" + utf8;
    }
    default: {
        std::string ansi(text.size(), '\0');
        WideCharToMultiByte(1252, 0, text.data(), static_cast<int>(text.size()), ansi.data(),
                            static_cast<int>(ansi.size()), nullptr, nullptr);
        return ansi;
    }
    }
}

const char* Name(Encoding encoding) {
    return encoding == Encoding::Utf16Le         ? "UTF-16LE"
           : encoding == Encoding::Utf8Signature ? "UTF-8 with signature"
                                                 : "ANSI";
}

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

    MIniFile Loaded() const {
        MIniFile ini;
        EXPECT_TRUE(ini.Load(m_path));
        return ini;
    }

    std::wstring m_path;
};

// A key, and a value to write or to expect.
struct Entry {
    const wchar_t* section;
    const wchar_t* key;
    const wchar_t* value;
};

const Encoding kEncodings[] = {Encoding::Ansi, Encoding::Utf8Signature, Encoding::Utf16Le};

// Files written by hand as people write them: odd spacing, repeated keys and sections, quotes,
// comments, keys before the first header, no line end at the end.
const wchar_t kOddFile[] =
    L"top = outside\r\n"
    L"  [ Sp ]  trailing text\r\n"
    L"  Key  =  v a l  \r\n"
    L"key=second\r\n"
    L"; c = x\r\n"
    L"\tq\t=\t\"quoted\"\t\r\n"
    L"sq='single'\r\n"
    L"half=\"open\r\n"
    L"noeq\r\n"
    L"e=a=b ; not a comment\r\n"
    L"caf\u00e9=cr\u00e8me\r\n"
    L"[sp]\r\n"
    L"Key=in the second section\r\n"
    L"only=in the second section\r\n"
    L"[Unclosed\r\n"
    L"[Last]\n"
    L"lf=alone\n"
    L"n = 42 \r\n"
    L"hex=0x1F\r\noct=0o17\r\nbin=-0b101\r\nwrap=99999999999\r\ntail=42abc\r\n"
    L"end=final";

} // namespace

TEST_F(MIniFileSystemTest, ReadsHandWrittenFilesAsTheSystem) {
    const struct {
        const wchar_t* section;
        const wchar_t* key;
    } probes[] = {{L"Sp", L"key"},   {L" SP ", L" KEY "}, {L"sp", L"q"},      {L"sp", L"sq"},
                  {L"sp", L"half"},  {L"sp", L"e"},       {L"sp", L"noeq"},   {L"SP", L"caf\u00e9"},
                  {L"Sp", L"only"},  {L"", L"top"},       {L"last", L"lf"},   {L"last", L"n"},
                  {L"last", L"end"}, {L"Unclosed", L"x"}, {L"nosuch", L"key"}};
    for (const Encoding encoding : kEncodings) {
        SCOPED_TRACE(Name(encoding));
        WriteRaw(L"profile.ini", Encoded(kOddFile, encoding));
        const MIniFile ini = Loaded();
        EXPECT_EQ(encoding, ini.GetEncoding());
        for (const auto& probe : probes) {
            SCOPED_TRACE(std::wstring(probe.section) + L"/" + probe.key);
            EXPECT_EQ(System(probe.section, probe.key),
                      ini.GetString(probe.section, probe.key, kMissing));
        }
        for (const wchar_t* key : {L"n", L"hex", L"oct", L"bin", L"wrap", L"tail"})
            EXPECT_EQ(static_cast<int>(GetPrivateProfileIntW(L"Last", key, -1, m_path.c_str())),
                      ini.GetInt(L"Last", key, -1))
                << key;
        EXPECT_EQ(SystemNames(nullptr), ini.GetSections());
        EXPECT_EQ(SystemNames(L"sp"), ini.GetKeys(L"sp"));
        EXPECT_EQ(SystemNames(L"Last"), ini.GetKeys(L"Last"));
    }
}

TEST_F(MIniFileSystemTest, ReadsWhatTheSystemWrote) {
    const Entry writes[] = {{L"First", L"a", L"1"},
                            {L" Second ", L" b ", L" spaced value "},
                            {L"first", L"A", L"replaced"},
                            {L"First", L"c", L"\"quoted\""},
                            {L"Third", L"\u00e9t\u00e9", L"caf\u00e9 \u00e0 la cr\u00e8me"},
                            {L"Second", L"n", L"-17"},
                            {L"", L"top", L"before the first header"}};
    for (const Encoding encoding : kEncodings) {
        SCOPED_TRACE(Name(encoding));
        // The system keeps a file's encoding, which its first bytes give; an empty file is ANSI.
        WriteRaw(L"profile.ini", Encoded(L"", encoding));
        for (const auto& write : writes)
            ASSERT_TRUE(
                WritePrivateProfileStringW(write.section, write.key, write.value, m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Second", L"gone", L"x", m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Second", L"gone", nullptr, m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Fourth", L"x", L"y", m_path.c_str()));
        ASSERT_TRUE(WritePrivateProfileStringW(L"Fourth", nullptr, nullptr, m_path.c_str()));
        WritePrivateProfileStringW(nullptr, nullptr, nullptr, m_path.c_str());

        const MIniFile ini = Loaded();
        EXPECT_EQ(encoding, ini.GetEncoding());
        EXPECT_EQ(SystemNames(nullptr), ini.GetSections());
        for (const std::wstring& section : ini.GetSections()) {
            SCOPED_TRACE(section);
            EXPECT_EQ(SystemNames(section.c_str()), ini.GetKeys(section));
            for (const std::wstring& key : ini.GetKeys(section))
                EXPECT_EQ(System(section.c_str(), key.c_str()), ini.GetString(section, key)) << key;
        }
        EXPECT_EQ(L"replaced", ini.GetString(L"FIRST", L"a"));
        EXPECT_EQ(L"quoted", ini.GetString(L"first", L"c"));
        EXPECT_EQ(L"caf\u00e9 \u00e0 la cr\u00e8me", ini.GetString(L"third", L"\u00e9t\u00e9"));
        EXPECT_EQ(-17, ini.GetInt(L"second", L"n", 0));
        EXPECT_EQ(L"before the first header", ini.GetString(L"", L"top"));
        EXPECT_FALSE(ini.HasKey(L"Second", L"gone"));
        EXPECT_FALSE(ini.HasSection(L"Fourth"));
    }
}

TEST_F(MIniFileSystemTest, TheSystemReadsWhatMIniFileWrote) {
    const std::wstring start = L"; settings\r\n"
                               L"[ Window ]\r\n"
                               L"  Left =  10\r\n"
                               L"left=duplicate\r\n"
                               L"Title=\u00e9t\u00e9\r\n"
                               L"\r\n"
                               L"[Empty]\r\n"
                               L"[Paths]\r\n"
                               L"home = C:\\Users ; not a comment\r\n"
                               L"last=no line end";
    for (const Encoding encoding : kEncodings) {
        SCOPED_TRACE(Name(encoding));
        WriteRaw(L"profile.ini", Encoded(start, encoding));
        MIniFile ini = Loaded();
        ASSERT_TRUE(ini.SetInt(L"window", L"LEFT", -20));
        ASSERT_TRUE(ini.SetInt(L"Window", L"Top", 0x7FFFFFFF));
        ASSERT_TRUE(ini.SetString(L"window", L"Title", L"caf\u00e9"));
        ASSERT_TRUE(ini.SetString(L"Empty", L"padded", L"  two blanks  "));
        ASSERT_TRUE(ini.SetString(L"Empty", L"quotes", L"\"in quotes\""));
        ASSERT_TRUE(ini.SetString(L"Paths", L"after", L"the last line"));
        ASSERT_TRUE(ini.SetString(L"New", L"k", L"v=w;x"));
        ASSERT_TRUE(ini.SetBool(L"New", L"flag", true));
        ASSERT_TRUE(ini.SetString(L"", L"top", L"first"));
        ASSERT_TRUE(ini.DeleteKey(L"paths", L"HOME"));
        ASSERT_TRUE(ini.Save());

        const MIniFile reread = Loaded();
        EXPECT_EQ(encoding, reread.GetEncoding());
        const Entry reads[] = {{L"Window", L"left", L"-20"},
                               {L"Window", L"top", L"2147483647"},
                               {L"Window", L"title", L"caf\u00e9"},
                               {L"Empty", L"padded", L"  two blanks  "},
                               {L"Empty", L"quotes", L"\"in quotes\""},
                               {L"Paths", L"last", L"no line end"},
                               {L"Paths", L"after", L"the last line"},
                               {L"Paths", L"home", kMissing},
                               {L"New", L"k", L"v=w;x"},
                               {L"New", L"flag", L"1"},
                               {L"", L"top", L"first"}};
        for (const auto& read : reads) {
            SCOPED_TRACE(std::wstring(read.section) + L"/" + read.key);
            EXPECT_EQ(read.value, System(read.section, read.key));
            EXPECT_EQ(read.value, reread.GetString(read.section, read.key, kMissing));
        }
        EXPECT_EQ(-20,
                  static_cast<int>(GetPrivateProfileIntW(L"Window", L"Left", 0, m_path.c_str())));
        EXPECT_EQ(0x7FFFFFFF,
                  static_cast<int>(GetPrivateProfileIntW(L"Window", L"Top", 0, m_path.c_str())));
        EXPECT_EQ(1u, GetPrivateProfileIntW(L"New", L"flag", 0, m_path.c_str()));
        EXPECT_EQ(SystemNames(nullptr), reread.GetSections());
        EXPECT_EQ(SystemNames(L"Window"), reread.GetKeys(L"Window"));
        // Every line not changed is still there as it was.
        const std::wstring text = reread.GetText();
        for (const wchar_t* kept : {L"; settings\r\n[ Window ]\r\n  Left =  -20\r\n",
                                    L"left=duplicate\r\n", L"\r\n\r\n[Empty]\r\n"})
            EXPECT_NE(std::wstring::npos, text.find(kept)) << kept;
    }
}
