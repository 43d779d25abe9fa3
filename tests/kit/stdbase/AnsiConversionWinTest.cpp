#include "StdBase.h"

#include <gtest/gtest.h>
#include <windows.h>

TEST(AnsiConversionWin, UsesTheActiveCodePage) {
    if (GetACP() != 1252)
        GTEST_SKIP() << "active code page is " << GetACP();
    EXPECT_EQ(L"caf\xE9 \x20AC", StdBase::ConvertAnsiToUnicode("caf\xE9 \x80"));
    EXPECT_EQ("caf\xE9 \x80", StdBase::ConvertUnicodeToAnsi(L"caf\xE9 \x20AC"));
}
