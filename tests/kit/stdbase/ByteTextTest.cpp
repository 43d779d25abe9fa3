#include "StdBase.h"

#include <gtest/gtest.h>

#include <vector>

TEST(ByteText, HexadecimalBothWays) {
    const unsigned char bytes[] = {0x00, 0x1f, 0xa0, 0xff};
    EXPECT_EQ(L"001fa0ff", StdBase::ConvertBytesToHex(bytes, sizeof bytes));
    EXPECT_EQ(L"", StdBase::ConvertBytesToHex(nullptr, 0));
    std::vector<unsigned char> parsed = {9};
    EXPECT_TRUE(StdBase::ConvertHexToBytes(L"001FA0fF", parsed));
    EXPECT_EQ(std::vector<unsigned char>(bytes, bytes + 4), parsed);
    EXPECT_TRUE(StdBase::ConvertHexToBytes(L"", parsed));
    EXPECT_TRUE(parsed.empty());
    for (const wchar_t* bad : {L"abc", L"0g", L"0x00", L" 00", L"\u0660\u0661"}) {
        parsed = {9};
        EXPECT_FALSE(StdBase::ConvertHexToBytes(bad, parsed)) << bad;
        EXPECT_TRUE(parsed.empty()) << bad;
    }
}

TEST(ByteText, SecureZero) {
    unsigned char secret[5] = {1, 2, 3, 4, 5};
    StdBase::SecureZero(secret, 4);
    EXPECT_EQ(0, secret[0]);
    EXPECT_EQ(0, secret[3]);
    EXPECT_EQ(5, secret[4]);
    StdBase::SecureZero(nullptr, 4);
}
