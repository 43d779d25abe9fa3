#include "StdBase.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>

using StdBase::FormatString;

TEST(FormatString, TextArgumentsFollowThePlatformConventions) {
    EXPECT_EQ(L"[wide|narrow]", FormatString(L"[%s|%S]", L"wide", "narrow"));
    EXPECT_EQ(L"[narrow|wide|wide]", FormatString(L"[%hs|%ls|%ws]", "narrow", L"wide", L"wide"));
    EXPECT_EQ(L"w n h l", FormatString(L"%c %C %hc %lc", L'w', 'n', 'h', L'l'));
    EXPECT_EQ(L"[  abc][ab   ]", FormatString(L"[%5s][%-5.2S]", L"abc", "abcdef"));
    EXPECT_EQ(L"[(null)]", FormatString(L"[%s]", static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(L"\x4E2D\x6587", FormatString(L"%s", L"\x4E2D\x6587"));
}

TEST(FormatString, NumbersWidthsAndLengthModifiers) {
    EXPECT_EQ(L"-42 2A 52 100% 2.25", FormatString(L"%d %X %o 100%% %.2f", -42, 42, 42, 2.25));
    EXPECT_EQ(L"[0007][+7][0x1f][    3.14][-5   ]",
              FormatString(L"[%04d][%+d][%#x][%*.*f][%*d]", 7, 7, 31, 8, 2, 3.14159, -5, -5));
    const int64_t big = INT64_C(-1234567890123);
    const uint64_t ubig = UINT64_MAX;
    EXPECT_EQ(L"-1234567890123 18446744073709551615 ffffffffffffffff",
              FormatString(L"%I64d %I64u %I64x", big, ubig, ubig));
    EXPECT_EQ(L"-1234567890123 18446744073709551615", FormatString(L"%lld %llu", big, ubig));
    EXPECT_EQ(L"2147483647 -1", FormatString(L"%I32d %I32d", INT_MAX, -1));
    const size_t size = static_cast<size_t>(1) << 40;
    EXPECT_EQ(L"1099511627776 10000000000 1099511627776",
              FormatString(L"%zu %zX %Iu", size, size, size));
    EXPECT_EQ(L"1 -1 255 -7", FormatString(L"%hd %hd %hhu %ld", 65537, 65535, 511, -7L));
}

TEST(FormatString, OutputOfAnyLengthKeepsLaterArguments) {
    const std::wstring longText(10000, L'x');
    EXPECT_EQ(longText + L"|17|tail|end",
              FormatString(L"%s|%d|%s|%S", longText.c_str(), 17, L"tail", "end"));
    EXPECT_EQ(std::wstring(4999, L' ') + L"1|after", FormatString(L"%5000d|%s", 1, L"after"));
}

TEST(FormatString, BadFormatsNeverReadStrayArguments) {
    // Unknown conversions are copied as written and consume no argument.
    EXPECT_EQ(L"%y 5 %5k", FormatString(L"%y %d %5k", 5));
    EXPECT_EQ(L"%I64s 3", FormatString(L"%I64s %d", 3));
    EXPECT_EQ(L"end %", FormatString(L"end %"));
    // So are a '%' ending an unknown one, both a '*' and digits as its width, and a length
    // that does not suit its conversion.
    EXPECT_EQ(L"%-%3 4", FormatString(L"%-%3 %d", 4));
    EXPECT_EQ(L"%*5d 4", FormatString(L"%*5d %d", 4));
    EXPECT_EQ(L"%Li %hf 4", FormatString(L"%Li %hf %d", 4));
    // %n writes nothing but still consumes its pointer, and the width a '*' asks for.
    int count = 42;
    EXPECT_EQ(L"ab7", FormatString(L"a%nb%d", &count, 7));
    EXPECT_EQ(L"ab7", FormatString(L"a%*nb%d", 3, &count, 7));
    EXPECT_EQ(42, count);
    EXPECT_EQ(L"", FormatString(nullptr));
}
