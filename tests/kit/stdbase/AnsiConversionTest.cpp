#include "StdBase.h"

#include <gtest/gtest.h>

using StdBase::ConvertAnsiToUnicode;
using StdBase::ConvertUnicodeToAnsi;

TEST(AnsiConversion, AsciiRoundTripKeepsEveryCharacter) {
    std::string ascii;
    for (int c = 0; c < 128; ++c)
        ascii += static_cast<char>(c); // includes the embedded NUL at the front
    const std::wstring wide = ConvertAnsiToUnicode(ascii);
    ASSERT_EQ(ascii.size(), wide.size());
    for (size_t i = 0; i < ascii.size(); ++i)
        EXPECT_EQ(static_cast<wchar_t>(ascii[i]), wide[i]) << i;
    EXPECT_EQ(ascii, ConvertUnicodeToAnsi(wide));
    EXPECT_EQ(L"", ConvertAnsiToUnicode(""));
    EXPECT_EQ("", ConvertUnicodeToAnsi(L""));
}

TEST(AnsiConversion, CharactersWithoutNarrowFormBecomeQuestionMarks) {
    // No single-byte code page has CJK ideographs.
    EXPECT_EQ("a?b", ConvertUnicodeToAnsi(L"a\x4E2D"
                                          L"b"));
}

#ifndef _WIN32
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
