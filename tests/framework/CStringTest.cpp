#include <cwchar>
#include <stdexcept>

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
    EXPECT_TRUE(L"Hello" == hello);
    EXPECT_TRUE(hello != CString(L"hello"));
    // Ordinal and case-insensitive order disagree here: 'a' (97) > 'B' (66), but a < b.
    EXPECT_EQ(1, Sign(CString(L"a").Compare(L"B")));
    EXPECT_EQ(-1, Sign(CString(L"a").CompareNoCase(L"B")));
    EXPECT_EQ(-1, Sign(CString(L"ABC").CompareNoCase(L"abcd")));
    EXPECT_EQ(1, Sign(CString(L"x").CompareNoCase(nullptr)));
    EXPECT_EQ(0, CString().CompareNoCase(nullptr));
}

TEST(CStringTest, ReleaseBufferMeasuresOrTakesTheGivenLength) {
    CString s;
    std::wcscpy(s.GetBuffer(10), L"abc");
    s.ReleaseBuffer();
    EXPECT_EQ(3, s.GetLength());
    std::wcscpy(s.GetBuffer(10), L"abcdef");
    s.ReleaseBuffer(2);
    EXPECT_STREQ(L"ab", s);
    // A smaller request still exposes the whole text.
    CString kept(L"hello");
    kept.GetBuffer(2)[0] = L'j';
    kept.ReleaseBuffer();
    EXPECT_STREQ(L"jello", kept);
    // A length beyond the buffer is clamped to it.
    wchar_t* buffer = kept.GetBufferSetLength(7);
    buffer[5] = L'!';
    buffer[6] = L'?';
    kept.ReleaseBuffer(100);
    EXPECT_STREQ(L"jello!?", kept);
}

TEST(CStringTest, FormatTakesWideStringsForPercentS) {
    CString text;
    text.Format(L"%s/%s: %d of %u, %c", L"dir", CString(L"part"), -3, 7u, L'x');
    EXPECT_STREQ(L"dir/part: -3 of 7, x", text);
    text.Format(L"%s", text); // its own old value as the argument
    EXPECT_STREQ(L"dir/part: -3 of 7, x", text);
}

TEST(CStringTest, SearchExtractReplaceAndTrim) {
    // Positions and counts outside the text are clamped, never read beyond it.
    CString s(L"a.b.c");
    EXPECT_EQ(3, s.Find(L'.', 2));
    EXPECT_EQ(-1, s.Find(L'a', 5));
    EXPECT_EQ(-1, s.Find(L".c", 4));
    EXPECT_EQ(3, s.ReverseFind(L'.'));
    EXPECT_STREQ(L"a.", s.Mid(-2, 2) + s.Mid(9, 2) + s.Left(-1));
    EXPECT_STREQ(L"a.b.c|b.c", s.Left(99) + L"|" + s.Right(3));

    s = L"aaaaa";
    EXPECT_EQ(2, s.Replace(L"aa", L"b")); // matches do not overlap
    EXPECT_STREQ(L"bba", s);
    s = L"a-a";
    EXPECT_EQ(2, s.Replace(L"a", L"aa")); // the replacement is not searched again
    EXPECT_EQ(4, s.Replace(L"a", nullptr));
    EXPECT_EQ(0, s.Replace(L"", L"z"));
    EXPECT_EQ(1, s.Replace(L'-', L'/'));
    EXPECT_STREQ(L"/", s);

    s = L" \t\"'v'\".. \r\n";
    EXPECT_STREQ(L"v", s.Trim().TrimRight(L'.').Trim(L"\"'"));
}

TEST(CStringTest, ConstructionConcatenationAndCharacterAccess) {
    CString s("abc"); // narrow text is converted
    s += "de";
    EXPECT_STREQ(L"abcde", s);
    EXPECT_STREQ(L"", CString(static_cast<const wchar_t*>(nullptr)));
    EXPECT_STREQ(L"!<abc>", L'!' + (L"<" + CString(L"a") + L'b' + L"c" + CString(L">")));
    EXPECT_STREQ(L"MIXED 1", CString(L"MiXeD 1").MakeUpper());
    EXPECT_THROW(s.GetAt(5), std::out_of_range);
}

} // namespace
