#include "StdBase.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>

using StdBase::FormatString;

TEST(FormatString, TextArgumentsFollowThePlatformConventions) {
    EXPECT_EQ(L"[wide]", FormatString(L"[%s]", L"wide"));
    EXPECT_EQ(L"[narrow]", FormatString(L"[%S]", "narrow"));
    EXPECT_EQ(L"[narrow|wide|wide]", FormatString(L"[%hs|%ls|%ws]", "narrow", L"wide", L"wide"));
    EXPECT_EQ(L"w n h l", FormatString(L"%c %C %hc %lc", L'w', 'n', 'h', L'l'));
    EXPECT_EQ(L"[  abc][ab   ]", FormatString(L"[%5s][%-5.2S]", L"abc", "abcdef"));
    EXPECT_EQ(L"[(null)]", FormatString(L"[%s]", static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(L"\x4E2D\x6587", FormatString(L"%s", L"\x4E2D\x6587"));
}

TEST(FormatString, NumbersWidthsAndLengthModifiers) {
    EXPECT_EQ(L"-42 42 2a 2A 52 100%", FormatString(L"%d %u %x %X %o 100%%", -42, 42u, 42, 42, 42));
    EXPECT_EQ(L"1.500000e+00 2.25 0.125 1e+20",
              FormatString(L"%e %.2f %g %g", 1.5, 2.25, 0.125, 1e20));
    EXPECT_EQ(L"[   7][7   ][0007][+7][0x1f]",
              FormatString(L"[%4d][%-4d][%04d][%+d][%#x]", 7, 7, 7, 7, 31));
    EXPECT_EQ(L"[    3.14][00042]", FormatString(L"[%*.*f][%.*d]", 8, 2, 3.14159, 5, 42));
    EXPECT_EQ(L"[-5   ]", FormatString(L"[%*d]", -5, -5)); // a negative star width left-aligns

    const int64_t big = INT64_C(-1234567890123);
    const uint64_t ubig = UINT64_C(18446744073709551615);
    EXPECT_EQ(L"-1234567890123 18446744073709551615 ffffffffffffffff",
              FormatString(L"%I64d %I64u %I64x", big, ubig, ubig));
    EXPECT_EQ(L"-1234567890123 18446744073709551615", FormatString(L"%lld %llu", big, ubig));
    EXPECT_EQ(L"2147483647 -1", FormatString(L"%I32d %I32d", INT_MAX, -1));
    const size_t size = static_cast<size_t>(1) << 40;
    EXPECT_EQ(L"1099511627776 10000000000 1099511627776",
              FormatString(L"%zu %zX %Iu", size, size, size));
    EXPECT_EQ(L"1 -1 255", FormatString(L"%hd %hd %hhu", 65537, 65535, 511));
    EXPECT_EQ(L"-7 7", FormatString(L"%ld %lu", -7L, 7UL));

    int local = 0;
    const std::wstring pointer = FormatString(L"%p", static_cast<void*>(&local));
    EXPECT_FALSE(pointer.empty());
    EXPECT_NE(pointer, FormatString(L"%p", static_cast<void*>(nullptr)));
}

TEST(FormatString, OutputOfAnyLengthKeepsLaterArguments) {
    const std::wstring longText(10000, L'x');
    const std::wstring result = FormatString(L"%s|%d|%s|%S", longText.c_str(), 17, L"tail", "end");
    EXPECT_EQ(longText + L"|17|tail|end", result);

    const std::wstring padded = FormatString(L"%5000d|%s", 1, L"after");
    ASSERT_EQ(5000u + 6u, padded.size());
    EXPECT_EQ(std::wstring(4999, L' ') + L"1|after", padded);
}

TEST(FormatString, BadFormatsNeverReadStrayArguments) {
    // Unknown conversions are copied as written and consume no argument.
    EXPECT_EQ(L"%y 5 %5k", FormatString(L"%y %d %5k", 5));
    EXPECT_EQ(L"%I64s 3", FormatString(L"%I64s %d", 3));
    EXPECT_EQ(L"end %", FormatString(L"end %"));
    // %n writes nothing but still consumes its pointer.
    int count = 42;
    EXPECT_EQ(L"ab7", FormatString(L"a%nb%d", &count, 7));
    EXPECT_EQ(42, count);
    EXPECT_EQ(L"", FormatString(nullptr));
    EXPECT_EQ(L"", FormatString(L""));
}
