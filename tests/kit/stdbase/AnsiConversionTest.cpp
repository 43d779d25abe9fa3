#include "StdBase.h"

#include <gtest/gtest.h>

using StdBase::ConvertAnsiToUnicode;
using StdBase::ConvertUnicodeToAnsi;

TEST(AnsiConversion, AsciiRoundTripsAndUnmappableBecomesQuestionMark) {
    const std::string ascii("\0\t\r\n !AZaz~\x7F", 12); // an embedded NUL included
    const std::wstring wide(L"\0\t\r\n !AZaz~\x7F", 12);
    EXPECT_EQ(wide, ConvertAnsiToUnicode(ascii));
    EXPECT_EQ(ascii, ConvertUnicodeToAnsi(wide));
    // No single-byte code page has CJK ideographs.
    EXPECT_EQ("a?b", ConvertUnicodeToAnsi(L"a\u4E2Db"));
}

#ifdef _WIN32
#include <windows.h>

TEST(AnsiConversion, UsesTheActiveCodePage) {
    if (GetACP() != 1252)
        GTEST_SKIP() << "active code page is " << GetACP();
    EXPECT_EQ(L"caf\xE9 \x20AC", ConvertAnsiToUnicode("caf\xE9 \x80"));
    EXPECT_EQ("caf\xE9 \x80", ConvertUnicodeToAnsi(L"caf\xE9 \x20AC"));
}
#else
#include <clocale>

// Natively the C locale plays the active code page; UTF-8 shows multi-byte handling.
TEST(AnsiConversion, FollowsTheCurrentLocale) {
    const std::string previous = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr)
        GTEST_SKIP() << "no C.UTF-8 locale";
    EXPECT_EQ(L"\xE9t\x20AC", ConvertAnsiToUnicode("\xC3\xA9t\xE2\x82\xAC"));
    EXPECT_EQ("\xC3\xA9t\xE2\x82\xAC", ConvertUnicodeToAnsi(L"\xE9t\x20AC"));
    // Every byte that starts no complete character becomes one replacement.
    const std::wstring expected = std::wstring(L"a\xFFFD") + L"b\xFFFD\xFFFD";
    EXPECT_EQ(expected, ConvertAnsiToUnicode(std::string("a\x80") + "b\xE2\x82"));
    std::setlocale(LC_CTYPE, previous.c_str());
}
#endif

TEST(Utf8Conversion, EncodesEveryLengthAndReplacesLoneSurrogates) {
    using StdBase::ConvertUnicodeToUtf8;
    EXPECT_EQ(std::string("a\0b", 3), ConvertUnicodeToUtf8(std::wstring(L"a\0b", 3)));
    EXPECT_EQ("\xC3\xA9\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\xEF\xBF\xBF",
              ConvertUnicodeToUtf8(L"\x00E9\x07FF\x0800\x20AC\xFFFF"));
    // U+1F600 is a surrogate pair on Windows and one unit elsewhere.
    EXPECT_EQ("\xF0\x9F\x98\x80", ConvertUnicodeToUtf8(L"\U0001F600"));
    const std::wstring lone = {static_cast<wchar_t>(0xDE00), L'x', static_cast<wchar_t>(0xD83D)};
    EXPECT_EQ("\xEF\xBF\xBDx\xEF\xBF\xBD", ConvertUnicodeToUtf8(lone));
}

// Malformed UTF-8 costs one U+FFFD per maximal subpart, so a broken sequence never swallows
// the character after it; text is valid exactly when decoding loses nothing.
TEST(Utf8Conversion, DecodingReplacesEachMaximalSubpart) {
    const std::wstring bad(1, L'\xFFFD');
    const struct {
        const char* name;
        std::string bytes;
        std::wstring decoded; // empty: the bytes are valid
    } cases[] = {{"empty", "", L""},
                 {"every length", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", L""},
                 {"replacement character itself", "\xEF\xBF\xBD", L""},
                 {"surrogate", "\xED\xA0\x80x", bad + bad + bad + L"x"},
                 {"overlong", "\xE0\x80\x80x", bad + bad + bad + L"x"},
                 {"above U+10FFFF", "\xF4\x90\x80\x80", bad + bad + bad + bad},
                 {"cut short, then a whole one", "\xE2\x82\xC3\xA9", bad + L"\x00E9"},
                 {"cut at the end", "a\xE2\x82", L"a" + bad},
                 {"lead byte of two", "\xC0\xAF", bad + bad},
                 {"code page 1252", "caf\xE9", L"caf" + bad}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::wstring decoded = StdBase::ConvertUtf8ToUnicode(c.bytes.data(), c.bytes.size());
        EXPECT_EQ(c.decoded.empty(), StdBase::IsUtf8(c.bytes.data(), c.bytes.size()));
        if (!c.decoded.empty())
            EXPECT_EQ(c.decoded, decoded);
        else
            EXPECT_EQ(c.bytes, StdBase::ConvertUnicodeToUtf8(decoded));
    }
    // A UTF-16LE text cut inside a unit ends in one U+FFFD.
    const unsigned char odd[] = {'A', 0, 'B'};
    EXPECT_EQ(L"A\xFFFD", StdBase::ConvertUtf16LeToUnicode(odd, sizeof odd));
}

TEST(Utf16Conversion, EncodesPairsAndRoundTrips) {
    const std::wstring text = L"A\u00e9\u20ac\U0001F600";
    const std::string bytes = StdBase::ConvertUnicodeToUtf16Le(text);
    EXPECT_EQ(std::string("A\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE", 10), bytes);
    EXPECT_EQ(text, StdBase::ConvertUtf16LeToUnicode(
                        reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

TEST(CaseCompare, OrdersAsWcsicmp) {
    EXPECT_EQ(0, StdBase::CompareNoCase(L"Section", L"sECTION"));
    EXPECT_LT(StdBase::CompareNoCase(L"abc", L"ABD"), 0);
    EXPECT_GT(StdBase::CompareNoCase(L"b", L"A"), 0);
    EXPECT_LT(StdBase::CompareNoCase(L"ab", L"ABC"), 0); // a prefix sorts first
    EXPECT_LT(StdBase::CompareNoCase(L"_", L"A"), 0);    // '_' (5F) before the lowered 'a' (61)
    EXPECT_EQ(0, StdBase::CompareNoCase(std::wstring(L"a\0b", 3), std::wstring(L"A\0B", 3)));
    EXPECT_NE(0, StdBase::CompareNoCase(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)));
}
