#include <cwchar>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "CString.h"

namespace {

int Sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(CStringTest, CompareNoCaseIgnoresCaseWhereCompareDoesNot) {
    const CString hello(L"Hello");
    EXPECT_EQ(0, hello.CompareNoCase(L"hELLO"));
    EXPECT_NE(0, hello.Compare(L"hELLO"));
    EXPECT_EQ(0, hello.Compare(L"Hello"));

    // Ordinal and case-insensitive order disagree here: 'a' (97) > 'B' (66), but a < b.
    const CString a(L"a");
    EXPECT_EQ(1, Sign(a.Compare(L"B")));
    EXPECT_EQ(-1, Sign(a.CompareNoCase(L"B")));
    EXPECT_EQ(-1, Sign(CString(L"ABC").CompareNoCase(L"abcd")));
    EXPECT_EQ(1, Sign(CString(L"abcd").CompareNoCase(L"ABC")));
    EXPECT_EQ(1, Sign(CString(L"x").CompareNoCase(nullptr)));
    EXPECT_EQ(0, CString().CompareNoCase(nullptr));

    EXPECT_TRUE(hello == L"Hello");
    EXPECT_TRUE(L"Hello" == hello);
    EXPECT_TRUE(hello != CString(L"hello"));
    EXPECT_TRUE(CString(L"B") < CString(L"a"));
    EXPECT_FALSE(CString(L"a") < L"B");
}

TEST(CStringTest, ReleaseBufferMeasuresOrTakesTheGivenLength) {
    CString measured;
    wchar_t* buffer = measured.GetBuffer(10);
    std::wcscpy(buffer, L"abc");
    measured.ReleaseBuffer();
    EXPECT_EQ(3, measured.GetLength());
    EXPECT_TRUE(measured == L"abc");

    CString given;
    buffer = given.GetBuffer(10);
    std::wcscpy(buffer, L"abcdef");
    given.ReleaseBuffer(2);
    EXPECT_TRUE(given == L"ab");

    // A smaller request still exposes the whole text.
    CString kept(L"hello");
    buffer = kept.GetBuffer(2);
    buffer[0] = L'j';
    kept.ReleaseBuffer();
    EXPECT_TRUE(kept == L"jello");

    CString fixed(L"xy");
    buffer = fixed.GetBufferSetLength(4);
    buffer[2] = L'z';
    buffer[3] = L'w';
    fixed.ReleaseBuffer(100);
    EXPECT_TRUE(fixed == L"xyzw");
}

TEST(CStringTest, FormatTakesWideStringsForPercentS) {
    CString name(L"part");
    CString text;
    text.Format(L"%s/%s: %d of %u, %c", L"dir", name, -3, 7u, L'x');
    EXPECT_TRUE(text == L"dir/part: -3 of 7, x") << text.GetString();

    text.Format(L"%s", text);
    EXPECT_TRUE(text == L"dir/part: -3 of 7, x");

    const std::wstring longText(3000, L'q');
    text.Format(L"<%s>", longText.c_str());
    EXPECT_EQ(3002, text.GetLength());
    EXPECT_EQ(L'q', text[1]);
    EXPECT_EQ(L'>', text[3001]);
}

TEST(CStringTest, FindAndExtractAtTheBoundaries) {
    const CString s(L"a.b.c");
    EXPECT_EQ(1, s.Find(L'.'));
    EXPECT_EQ(3, s.Find(L'.', 2));
    EXPECT_EQ(-1, s.Find(L'.', 4));
    EXPECT_EQ(-1, s.Find(L'a', 5));
    EXPECT_EQ(-1, s.Find(L'a', -1));
    EXPECT_EQ(3, s.Find(L".c"));
    EXPECT_EQ(-1, s.Find(L".c", 4));
    EXPECT_EQ(-1, s.Find(L"x"));
    EXPECT_EQ(3, s.ReverseFind(L'.'));
    EXPECT_EQ(0, s.ReverseFind(L'a'));
    EXPECT_EQ(-1, s.ReverseFind(L'z'));

    EXPECT_TRUE(s.Mid(2) == L"b.c");
    EXPECT_TRUE(s.Mid(4, 10) == L"c");
    EXPECT_TRUE(s.Mid(5).IsEmpty());
    EXPECT_TRUE(s.Mid(9, 2).IsEmpty());
    EXPECT_TRUE(s.Mid(-2, 2) == L"a.");
    EXPECT_TRUE(s.Mid(1, -1).IsEmpty());
    EXPECT_TRUE(s.Left(2) == L"a.");
    EXPECT_TRUE(s.Left(99) == s);
    EXPECT_TRUE(s.Left(-1).IsEmpty());
    EXPECT_TRUE(s.Right(3) == L"b.c");
    EXPECT_TRUE(s.Right(99) == s);
    EXPECT_TRUE(s.Right(0).IsEmpty());
}

TEST(CStringTest, ReplaceCountsReplacements) {
    CString s(L"aaaaa");
    EXPECT_EQ(2, s.Replace(L"aa", L"b"));
    EXPECT_TRUE(s == L"bba");

    CString grow(L"a-a");
    EXPECT_EQ(2, grow.Replace(L"a", L"aa"));
    EXPECT_TRUE(grow == L"aa-aa");

    CString remove(L"x1x2x");
    EXPECT_EQ(3, remove.Replace(L"x", nullptr));
    EXPECT_TRUE(remove == L"12");
    EXPECT_EQ(0, remove.Replace(L"", L"z"));
    EXPECT_EQ(0, remove.Replace(L"q", L"z"));

    CString path(L"c:/a/b/");
    EXPECT_EQ(3, path.Replace(L'/', L'\\'));
    EXPECT_TRUE(path == L"c:\\a\\b\\");
}

TEST(CStringTest, TrimRemovesWhiteSpaceOrTheGivenCharacters) {
    CString s(L" \t a b \r\n");
    EXPECT_TRUE(s.Trim() == L"a b");
    CString left(L"  x  ");
    EXPECT_TRUE(left.TrimLeft() == L"x  ");
    CString right(L"  x  ");
    EXPECT_TRUE(right.TrimRight() == L"  x");
    CString quoted(L"\"'v'\"");
    EXPECT_TRUE(quoted.Trim(L"\"'") == L"v");
    CString dots(L"..v..");
    EXPECT_TRUE(dots.TrimRight(L'.') == L"..v");
    EXPECT_TRUE(dots.TrimLeft(L'.') == L"v");
    CString all(L"   ");
    EXPECT_TRUE(all.Trim().IsEmpty());
}

TEST(CStringTest, ConstructionConcatenationAndCharacterAccess) {
    CString narrow("abc");
    EXPECT_TRUE(narrow == L"abc");
    narrow += "de";
    narrow += L'f';
    EXPECT_TRUE(narrow == L"abcdef");
    narrow = "xy";
    EXPECT_TRUE(narrow == L"xy");
    EXPECT_TRUE(CString(static_cast<const wchar_t*>(nullptr)).IsEmpty());
    EXPECT_TRUE(CString(L'-', 3) == L"---");
    EXPECT_TRUE(CString(L"abcdef", 2) == L"ab");

    const CString joined = L"<" + CString(L"a") + L'b' + L"c" + CString(L">");
    EXPECT_TRUE(joined == L"<abc>");
    EXPECT_TRUE(L'!' + joined == L"!<abc>");

    CString s(L"MiXeD 1");
    EXPECT_TRUE(s.MakeUpper() == L"MIXED 1");
    EXPECT_TRUE(s.MakeLower() == L"mixed 1");
    s.SetAt(0, L'f');
    EXPECT_EQ(L'f', s.GetAt(0));
    EXPECT_EQ(std::wstring(L"fixed 1"), static_cast<const wchar_t*>(s));
    EXPECT_THROW(s.GetAt(7), std::out_of_range);
    EXPECT_THROW(s.SetAt(-1, L'x'), std::out_of_range);
    s.Empty();
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_EQ(0, s.GetLength());
}

} // namespace
