#include "MString.h"
#include "TempFolder.h"

TEST(MStringTest, ConstructionAndAccess) {
    EXPECT_STREQ(L"", MString().C_STR());
    EXPECT_STREQ(L"", MString(static_cast<const wchar_t*>(nullptr)).C_STR());
    EXPECT_TRUE(MString(static_cast<const wchar_t*>(nullptr)).IsEmpty());

    MString s(std::wstring(L"ab\0c", 4));
    EXPECT_EQ(4u, s.GetLength());
    EXPECT_FALSE(s.IsEmpty());

    MString t(L"x");
    t += MString(L"y");
    t += L"z";
    t += static_cast<const wchar_t*>(nullptr);
    t += L'!';
    EXPECT_EQ(std::wstring(L"xyz!"), t.str());
    EXPECT_TRUE(t == MString(L"xyz!"));
    EXPECT_TRUE(t != MString(L"xyz"));
    EXPECT_TRUE(MString(L"a") < MString(L"b"));
    const std::wstring converted = t;
    EXPECT_EQ(L"xyz!", converted);
}

TEST(MStringTest, FormatUsesWideStringArguments) {
    MString s(L"old");
    s.FORMAT(L"%s=%d (%S) %5.2f%%", L"wide", 42, "narrow", 3.14159);
    EXPECT_STREQ(L"wide=42 (narrow)  3.14%", s.C_STR());

    // Far longer than any fixed formatting buffer.
    const std::wstring big(5000, L'q');
    s.FORMAT(L"<%s>%zu", big.c_str(), big.size());
    EXPECT_EQ(L"<" + big + L">5000", s.str());

    s.FORMAT(nullptr);
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_STREQ(L"", s.C_STR());
}

class MStringIniTest : public TempFolderTest {
protected:
    // Value of section/key, or "<missing>" when LOAD_INI_STRING reports no key.
    std::wstring Load(const std::wstring& file, const wchar_t* section, const wchar_t* key) {
        MString value(L"stale");
        if (!value.LOAD_INI_STRING(Path(file).c_str(), section, key)) {
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
                           "; Commented=yes\r\n"
                           "   ;Indented=comment\r\n"
                           "Equation=a=b;c\r\n"
                           "Empty=\r\n"
                           "NoEquals\r\n"
                           "[ Other ]\n"
                           "WorkingDirectory=elsewhere\n"
                           "Last=final");
    EXPECT_EQ(L"C:\\Work dir", Load(L"plain.ini", L"Orvano", L"WorkingDirectory"));
    EXPECT_EQ(L"C:\\Work dir", Load(L"plain.ini", L"ORVANO", L"workingdirectory"));
    EXPECT_EQ(L"elsewhere", Load(L"plain.ini", L"other", L"WorkingDirectory"));
    EXPECT_EQ(L"final", Load(L"plain.ini", L"Other", L"Last"));
    EXPECT_EQ(L"a=b;c", Load(L"plain.ini", L"Orvano", L"Equation"));
    EXPECT_EQ(L"", Load(L"plain.ini", L"Orvano", L"Empty"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", L"Commented"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", L"Indented"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", L"NoEquals"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", L"Last"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Orvano", L"top"));
    EXPECT_EQ(L"<missing>", Load(L"plain.ini", L"Missing", L"WorkingDirectory"));
    EXPECT_EQ(L"<missing>", Load(L"nofile.ini", L"Orvano", L"WorkingDirectory"));

    MString value;
    EXPECT_FALSE(value.LOAD_INI_STRING(nullptr, L"Orvano", L"Empty"));
    EXPECT_FALSE(value.LOAD_INI_STRING(Path(L"plain.ini").c_str(), nullptr, L"Empty"));
    EXPECT_FALSE(value.LOAD_INI_STRING(Path(L"plain.ini").c_str(), L"Orvano", nullptr));
}

TEST_F(MStringIniTest, ByteOrderMarks) {
    // "[S]\r\nKey=Gr\u00fc\u00dfe \u20ac \U0001F600\r\n" in each Unicode form.
    const std::wstring expected = L"Gr\u00fc\u00dfe \u20ac \U0001F600";
    WriteRaw(L"utf8.ini", "\xEF\xBB\xBF[S]\r\nKey=Gr\xC3\xBC\xC3\x9F"
                          "e \xE2\x82\xAC \xF0\x9F\x98\x80\r\n");
    EXPECT_EQ(expected, Load(L"utf8.ini", L"s", L"key"));

    std::string utf16 = "\xFF\xFE";
    for (char16_t unit : std::u16string(u"[S]\r\nKey=Gr\u00fc\u00dfe \u20ac \U0001F600\r\n")) {
        utf16 += static_cast<char>(unit & 0xFF);
        utf16 += static_cast<char>(unit >> 8);
    }
    WriteRaw(L"utf16.ini", utf16);
    EXPECT_EQ(expected, Load(L"utf16.ini", L"S", L"KEY"));
    EXPECT_EQ(L"<missing>", Load(L"utf16.ini", L"S", L"Other"));

    // Malformed sequences become replacement characters instead of ending the value.
    WriteRaw(L"bad8.ini", "\xEF\xBB\xBF[S]\nKey=a\xC0\xAF"
                          "b\xE2\x82\r\nNext=n\n");
    EXPECT_EQ(L"a\uFFFD\uFFFDb\uFFFD", Load(L"bad8.ini", L"S", L"Key"));
    EXPECT_EQ(L"n", Load(L"bad8.ini", L"S", L"Next"));
    WriteRaw(L"bad16.ini", std::string("\xFF\xFE[\0S\0]\0\n\0K\0=\0\x00\xD8x\0", 18));
    EXPECT_EQ(L"\uFFFDx", Load(L"bad16.ini", L"S", L"K"));

    // Without a mark the first line's bytes are not mistaken for one.
    WriteRaw(L"nobom.ini", "[S]\nKey=plain\n");
    EXPECT_EQ(L"plain", Load(L"nobom.ini", L"S", L"Key"));
    WriteRaw(L"empty.ini", "");
    EXPECT_EQ(L"<missing>", Load(L"empty.ini", L"S", L"Key"));
}
