#include "MString.h"
#include "TempFolder.h"

TEST(MStringTest, NullTextIsEmptyAndFormatTakesWideStrings) {
    MString s(static_cast<const wchar_t*>(nullptr));
    s += static_cast<const wchar_t*>(nullptr);
    s += L'!';
    EXPECT_STREQ(L"!", s.C_STR());
    s.FORMAT(L"%s=%d (%S)", L"wide", 42, "narrow");
    EXPECT_EQ(L"wide=42 (narrow)", s.str());
    s.FORMAT(nullptr);
    EXPECT_TRUE(s.IsEmpty());
}

class MStringIniTest : public TempFolderTest {
protected:
    // Value of section/key, or "<missing>" when LOAD_INI_STRING reports no key.
    std::wstring Load(const std::wstring& file, const wchar_t* section, const wchar_t* key) {
        MString value(L"stale");
        if (!value.LOAD_INI_STRING(file.empty() ? nullptr : Path(file).c_str(), section, key)) {
            EXPECT_TRUE(value.IsEmpty()); // a failed load leaves nothing behind
            return L"<missing>";
        }
        return value.str();
    }
};

TEST_F(MStringIniTest, AnsiFileLookups) {
    WriteRaw(L"plain.ini", "top=outside\r\n"
                           "[Orvano]\r\n"
                           "WorkingDirectory = C:\\Work dir \r\n"
                           "   ;Indented=comment\r\n"
                           "Equation=a=b;c\r\n"
                           "Empty=\r\n"
                           "NoEquals\r\n"
                           "[ Other ]\n"
                           "WorkingDirectory=elsewhere\n"
                           "Last=final");
    EXPECT_EQ(L"C:\\Work dir", Load(L"plain.ini", L"ORVANO", L"workingdirectory"));
    EXPECT_EQ(L"elsewhere", Load(L"plain.ini", L"other", L"WorkingDirectory"));
    EXPECT_EQ(L"final", Load(L"plain.ini", L"Other", L"Last"));
    EXPECT_EQ(L"a=b;c", Load(L"plain.ini", L"Orvano", L"Equation"));
    EXPECT_EQ(L"", Load(L"plain.ini", L"Orvano", L"Empty"));
    // Comments, lines without "=", keys of other sections and null names are no keys.
    for (const wchar_t* key : {L"Indented", L"NoEquals", L"Last", L"top"})
        EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", key)) << key;
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", nullptr, L"Empty"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", nullptr));
    EXPECT_EQ(L"<missing>", Load(L"nofile.ini", L"Orvano", L"Empty"));
}

// Malformed sequences become replacement characters instead of ending the value; valid UTF-8
// without a signature is UTF-8 too, and a lone "\r" ends a line. (The signatures are checked
// through MIniFile, which decodes the same way.)
TEST_F(MStringIniTest, Encodings) {
    WriteRaw(L"nosig.ini", "top=first\r\n[S]\rKey=Gr\xC3\xBC\xC3\x9F"
                           "e\n");
    EXPECT_EQ(L"Gr\u00fc\u00dfe", Load(L"nosig.ini", L"s", L"key"));
    EXPECT_EQ(L"first", Load(L"nosig.ini", L"", L"top"));
    EXPECT_EQ(L"<missing>", Load(L"nosig.ini", L"S", L"top"));

    WriteRaw(L"bad8.ini", "\xEF\xBB\xBF[S]\nKey=a\xC0\xAF"
                          "b\xE2\x82\r\nNext=n\n");
    EXPECT_EQ(L"a\uFFFD\uFFFDb\uFFFD", Load(L"bad8.ini", L"S", L"Key"));
    EXPECT_EQ(L"n", Load(L"bad8.ini", L"S", L"Next"));
    WriteRaw(L"bad16.ini", std::string("\xFF\xFE[\0S\0]\0\n\0K\0=\0\x00\xD8x\0", 18));
    EXPECT_EQ(L"\uFFFDx", Load(L"bad16.ini", L"S", L"K"));
    WriteRaw(L"empty.ini", "");
    EXPECT_EQ(L"<missing>", Load(L"empty.ini", L"S", L"Key"));
}
