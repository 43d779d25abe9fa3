// MIniFile on bytes and on files: lookups as the system's profile functions make them, edits
// that keep every other line, the encodings, and writing back through a file of its own.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "FileOs.h"
#include "IniSamples.h"
#include "MIniFile.h"
#include "StdBase.h"
#include "TempFolder.h"
#include "TestingUtility.h"

namespace {

using Encoding = MIniFile::Encoding;

MIniFile Parsed(const std::string& bytes) {
    MIniFile ini;
    ini.Parse(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    return ini;
}

std::string Utf16Le(const std::wstring& text) {
    return "\xFF\xFE" + StdBase::ConvertUnicodeToUtf16Le(text);
}

} // namespace

TEST(MIniFileTest, LooksUpAsTheProfileFunctions) {
    const std::string bytes = StdBase::ConvertUnicodeToUtf8(kHandWritten);
    const MIniFile ini = Parsed(bytes);
    for (const IniEntry& probe : kHandWrittenValues) {
        SCOPED_TRACE(std::wstring(probe.section) + L"/" + probe.key);
        EXPECT_EQ(probe.value, ini.GetString(probe.section, probe.key, kMissing));
        EXPECT_EQ(probe.value != std::wstring(kMissing), ini.HasKey(probe.section, probe.key));
    }
    for (const IniInt& probe : kHandWrittenInts)
        EXPECT_EQ(probe.value, ini.GetInt(L"Last", probe.key, -1)) << probe.key;
    std::wstring value = L"unchanged";
    EXPECT_FALSE(ini.GetString(L"sp", L"noeq", value));
    EXPECT_EQ(L"unchanged", value);

    EXPECT_EQ((std::vector<std::wstring>{L"Sp", L"Last"}), ini.GetSections());
    EXPECT_EQ((std::vector<std::wstring>{L"Key", L"q", L"sq", L"half", L"e", L"caf\u00e9"}),
              ini.GetKeys(L"SP"));
    EXPECT_EQ((std::vector<std::wstring>{L"top"}), ini.GetKeys(L""));
    EXPECT_TRUE(ini.HasSection(L""));
    EXPECT_FALSE(Parsed("[a]\r\nk=1\r\n").HasSection(L""));
    EXPECT_EQ(bytes, ini.GetBytes()); // unchanged bytes come back as they were
    EXPECT_FALSE(ini.IsModified());
    // Comments are no keys (the system's lookup finds them by name, but does not list them).
    EXPECT_FALSE(ini.HasKey(L"sp", L"; c"));
    // A nameless key, and a lone "\r" that ends a line.
    const MIniFile more = Parsed("[s]\r=nameless\rcr=alone");
    EXPECT_EQ(L"nameless", more.GetString(L"s", L"", kMissing));
    EXPECT_EQ(L"alone", more.GetString(L"s", L"cr", kMissing));
}

TEST(MIniFileTest, TypedValues) {
    const MIniFile ini = Parsed("[n]\nneg=-17\nplus=+5\nquoted=\"7\"\nminus=-\n"
                                "d2= -2e3 \nd3=1.5x\nd4=inf\nd5=\xE9\n"
                                "b1=Yes\nb2=off\nb3=2\nb4=maybe\nb5=0\n");
    const IniInt ints[] = {{L"neg", -17}, {L"plus", 5}, {L"quoted", 7}, {L"minus", -1}};
    for (const IniInt& c : ints)
        EXPECT_EQ(c.value, ini.GetInt(L"n", c.key, -1)) << c.key;
    const struct {
        const wchar_t* key;
        double expected;
    } doubles[] = {{L"d2", -2000}, {L"d3", -1}, {L"d5", -1}};
    for (const auto& c : doubles)
        EXPECT_EQ(c.expected, ini.GetDouble(L"n", c.key, -1)) << c.key;
    EXPECT_TRUE(std::isinf(ini.GetDouble(L"n", L"d4", 0)));
    // What is no truth value, or missing, gives the default.
    const struct {
        const wchar_t* key;
        bool byDefault, expected;
    } bools[] = {{L"b1", false, true},    {L"b2", true, false},  {L"b3", false, true},
                 {L"b4", true, true},     {L"b4", false, false}, {L"b5", true, false},
                 {L"missing", true, true}};
    for (const auto& c : bools)
        EXPECT_EQ(c.expected, ini.GetBool(L"n", c.key, c.byDefault)) << c.key << " " << c.byDefault;

    MIniFile out;
    EXPECT_TRUE(out.SetInt(L"t", L"i", -2147483647 - 1));
    EXPECT_TRUE(out.SetDouble(L"t", L"d", 0.1));
    EXPECT_TRUE(out.SetBool(L"t", L"b", true));
    EXPECT_EQ(L"[t]\r\ni=-2147483648\r\nd=0.1\r\nb=1\r\n", out.GetText());
    EXPECT_EQ(-2147483647 - 1, out.GetInt(L"t", L"i", 0));
}

TEST(MIniFileTest, EditsKeepEveryOtherLine) {
    MIniFile ini = Parsed("; head\n"
                          "[A]\nx  =  1   \n; about x\n\n"
                          "; about B\n[B]\ny=2");
    EXPECT_TRUE(ini.SetString(L"a", L"X", L"new"));       // name, spacing and line kept
    EXPECT_TRUE(ini.SetString(L" A ", L" w ", L"4"));     // after the section's last key
    EXPECT_TRUE(ini.SetString(L"B", L"z", L"3"));         // the last line gets its line end
    EXPECT_TRUE(ini.SetString(L"C", L"k", L"  padded ")); // quoted to keep its blanks
    EXPECT_TRUE(ini.SetString(L"C", L"q", L"'x'"));
    EXPECT_TRUE(ini.SetString(L"", L"top", L"v"));
    EXPECT_TRUE(ini.IsModified());
    EXPECT_EQ(L"top=v\n; head\n"
              L"[A]\nx  =  new   \nw=4\n; about x\n\n"
              L"; about B\n[B]\ny=2\nz=3\n"
              L"[C]\nk=\"  padded \"\nq=\"'x'\"\n",
              ini.GetText());
    EXPECT_EQ(L"  padded ", ini.GetString(L"c", L"k"));
    EXPECT_EQ(L"'x'", ini.GetString(L"c", L"q"));

    // What cannot stand in one line is refused and logged, and nothing changes.
    const std::wstring before = ini.GetText();
    TestingUtility log;
    const IniEntry refused[] = {{L"A", L"k", L"two\nlines"}, {L"A", L"k=v", L"1"},
                                {L"A", L";k", L"1"},         {L"A", L"[k", L"1"},
                                {L"A", L"  ", L"1"},         {L"A]", L"k", L"1"},
                                {L"A\rB", L"k", L"1"}};
    for (const auto& c : refused)
        EXPECT_FALSE(ini.SetString(c.section, c.key, c.value)) << c.section << L"/" << c.key;
    EXPECT_EQ(before, ini.GetText());
    ASSERT_EQ(7u, log.GetTexts().size());
    EXPECT_EQ(L"In MIniFile::SetString() : Cannot store [A] k=v in one line", log.GetTexts()[1]);

    EXPECT_TRUE(ini.DeleteKey(L"A", L"X"));
    EXPECT_FALSE(ini.DeleteKey(L"A", L"X"));
    EXPECT_FALSE(ini.DeleteKey(L"nosuch", L"X"));
    EXPECT_TRUE(ini.DeleteSection(L"b"));
    EXPECT_FALSE(ini.DeleteSection(L"b"));
    EXPECT_TRUE(ini.DeleteSection(L""));
    EXPECT_EQ(L"[A]\nw=4\n; about x\n\n; about B\n"
              L"[C]\nk=\"  padded \"\nq=\"'x'\"\n",
              ini.GetText());
    EXPECT_EQ((std::vector<std::wstring>{L"A", L"C"}), ini.GetSections());
}

TEST(MIniFileTest, DuplicatesGoTogether) {
    MIniFile ini = Parsed("[S]\r\nk=1\r\nK=2\r\n[s]\r\nk=3\r\nj=4\r\n[T]\r\n");
    EXPECT_EQ((std::vector<std::wstring>{L"k"}), ini.GetKeys(L"s"));
    EXPECT_TRUE(ini.SetString(L"s", L"k", L"one"));
    EXPECT_EQ(L"one", ini.GetString(L"S", L"k"));
    EXPECT_TRUE(ini.DeleteKey(L"S", L"k"));
    EXPECT_EQ(L"[S]\r\n[s]\r\nk=3\r\nj=4\r\n[T]\r\n", ini.GetText());
    // The first section is the one that counts, and it has no k now.
    EXPECT_FALSE(ini.HasKey(L"s", L"k"));
    EXPECT_TRUE(ini.DeleteSection(L"S"));
    EXPECT_EQ(L"[T]\r\n", ini.GetText());
}

TEST(MIniFileTest, Encodings) {
    const std::wstring text = L"[S]\r\nKey=Gr\u00fc\u00dfe \u20ac \U0001F600\r\n";
    const std::wstring value = L"Gr\u00fc\u00dfe \u20ac \U0001F600";
    const std::string utf8 = "[S]\r\nKey=Gr\xC3\xBC\xC3\x9F"
                             "e \xE2\x82\xAC \xF0\x9F\x98\x80\r\n";
    const struct {
        const char* name;
        std::string bytes;
        Encoding encoding;
    } cases[] = {
        {"utf-8 with signature", "\xEF\xBB\xBF" + utf8, Encoding::Utf8Signature},
        {"utf-8", utf8, Encoding::Utf8}, // valid, with non-ASCII sequences
        {"utf-16le", Utf16Le(text), Encoding::Utf16Le},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MIniFile ini = Parsed(c.bytes);
        EXPECT_EQ(c.encoding, ini.GetEncoding());
        EXPECT_EQ(value, ini.GetString(L"s", L"key"));
        EXPECT_EQ(text, ini.GetText());
        EXPECT_EQ(c.bytes, ini.GetBytes()); // written back in the encoding read
    }
    // Invalid UTF-8 and pure ASCII are ANSI text.
    EXPECT_EQ(Encoding::Ansi, Parsed("[S]\nk=\xC3\n").GetEncoding());
    EXPECT_EQ(Encoding::Ansi, Parsed("[S]\nk=v\n").GetEncoding());
    EXPECT_EQ(Encoding::Ansi, MIniFile().GetEncoding());

    // ANSI text that would lose a character is written as UTF-16LE instead.
    MIniFile ini = Parsed("[S]\r\nk=v\r\n");
    ASSERT_TRUE(ini.SetString(L"S", L"e", L"\U0001F600"));
    EXPECT_EQ(Utf16Le(L"[S]\r\nk=v\r\ne=\U0001F600\r\n"), ini.GetBytes());
    ini.SetEncoding(Encoding::Utf8);
    EXPECT_EQ("[S]\r\nk=v\r\ne=\xF0\x9F\x98\x80\r\n", ini.GetBytes());
}

class MIniFileSaveTest : public TempFolderTest {};

TEST_F(MIniFileSaveTest, SavesThroughATemporaryFileBeside) {
    const std::wstring path = Path(L"settings.ini");
    MIniFile ini;
    {
        TestingUtility log;
        EXPECT_FALSE(ini.Load(path)); // a new file
        ASSERT_EQ(1u, log.GetTexts().size());
        EXPECT_EQ(L"In MIniFile::Load() : Could not read the file '" + path + L"'",
                  log.GetTexts()[0]);
    }
    EXPECT_EQ(path, ini.GetPath());
    ASSERT_TRUE(ini.SetString(L"S", L"k", L"1"));
    ASSERT_TRUE(ini.Save());
    EXPECT_FALSE(ini.IsModified());
    EXPECT_EQ("[S]\r\nk=1\r\n", ReadRaw(L"settings.ini"));

    WriteRaw(L"settings.ini", "\xEF\xBB\xBF; kept\n[S]\nk=1");
    MIniFile loaded(path);
    EXPECT_EQ(Encoding::Utf8Signature, loaded.GetEncoding());
    ASSERT_TRUE(loaded.SetString(L"S", L"k", L"\u00e9"));

    // Any failure of the temporary file or of the replacement leaves the old file complete
    // and no temporary file behind.
    for (const FileOs::Call failing :
         {FileOs::Call::Open, FileOs::Call::Write, FileOs::Call::Sync, FileOs::Call::Rename}) {
        SCOPED_TRACE(static_cast<int>(failing));
        const FileOs::Probe previous =
            FileOs::SetProbe([failing](FileOs::Call call, size_t) { return call != failing; });
        TestingUtility log;
        EXPECT_FALSE(loaded.Save());
        FileOs::SetProbe(previous);
        EXPECT_EQ(1u, log.GetTexts().size());
        EXPECT_TRUE(loaded.IsModified());
        EXPECT_EQ("\xEF\xBB\xBF; kept\n[S]\nk=1", ReadRaw(L"settings.ini"));
        EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(m_folder),
                                   std::filesystem::directory_iterator()));
    }
    ASSERT_TRUE(loaded.Save());
    EXPECT_EQ("\xEF\xBB\xBF; kept\n[S]\nk=\xC3\xA9", ReadRaw(L"settings.ini"));

    // A temporary name in use is passed over.
    WriteRaw(L"settings.ini.~ini1", "someone else's");
    EXPECT_TRUE(loaded.SaveAs(path));
    EXPECT_EQ("someone else's", ReadRaw(L"settings.ini.~ini1"));
    TestingUtility log;
    EXPECT_FALSE(MIniFile().Save());
    EXPECT_EQ((std::vector<std::wstring>{L"In MIniFile::Save() : No file name"}), log.GetTexts());
}

TEST(MIniFileTest, CopiesAndMovesAreIndependent) {
    MIniFile a = Parsed("[S]\nk=1\n");
    MIniFile b = a;
    ASSERT_TRUE(b.SetString(L"S", L"k", L"2"));
    EXPECT_EQ(L"1", a.GetString(L"S", L"k"));
    MIniFile c = std::move(b);
    EXPECT_EQ(L"2", c.GetString(L"S", L"k"));
    EXPECT_TRUE(b.GetSections().empty());
    a = c;
    EXPECT_EQ(L"2", a.GetString(L"S", L"k"));
}
