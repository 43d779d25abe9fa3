#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "CharacterSetConversions.h"

using namespace CharacterSetConversions;

namespace {

// Narrow text of the tests in the code page most installations use.
bool IsWesternCodePage() {
    return GetACP() == 1252;
}

} // namespace

TEST(CharacterSetConversions, WideToActiveCodePage) {
    char* narrow = nullptr;
    size_t length = 0;
    ASSERT_TRUE(CopyToNewMBCS(narrow, length, std::wstring()));
    EXPECT_EQ(length, 1u);
    EXPECT_EQ(narrow[0], '\0');
    ::operator delete(narrow);

    ASSERT_TRUE(CopyToNewMBCS(narrow, length, CString(L"plain")));
    EXPECT_EQ(length, 6u);
    EXPECT_STREQ(narrow, "plain");
    ::operator delete(narrow);

    char marker = 'm';
    narrow = &marker;
    length = 42;
    EXPECT_FALSE(CopyToNewMBCS(narrow, length, nullptr, nullptr));
    EXPECT_EQ(narrow, &marker);
    EXPECT_EQ(length, 42u);

    if (!IsWesternCodePage())
        GTEST_SKIP() << "active code page " << GetACP();
    const char hash = '#';
    ASSERT_TRUE(CopyToNewMBCS(narrow, length, L"d\u00e9j\u00e0 \u4e2d", &hash));
    EXPECT_EQ(length, 7u);
    EXPECT_STREQ(narrow, "d\xe9j\xe0 #");
    ::operator delete(narrow);

    ASSERT_TRUE(CopyToNewMBCS(narrow, length, MString(L"\u4e2d")));
    EXPECT_STREQ(narrow, "?");
    ::operator delete(narrow);

    EXPECT_STREQ(String<char>(L"x\u4e2d", '*'), "x*");
    EXPECT_STREQ(String<char>(std::wstring(L"\u00e9")), "\xe9");
    EXPECT_STREQ(String<char>(CString(L"cs")), "cs");
    EXPECT_STREQ(String<char>(MString(L"ms")), "ms");
}

TEST(CharacterSetConversions, ActiveCodePageToWide) {
    wchar_t marker = L'm';
    wchar_t* wide = &marker;
    size_t length = 42;
    EXPECT_FALSE(CopyToNewWCS(wide, length, static_cast<const char*>(nullptr)));
    EXPECT_FALSE(CopyToNewTCS(wide, length, static_cast<const char*>(nullptr)));
    EXPECT_EQ(wide, &marker);
    EXPECT_EQ(length, 42u);
    EXPECT_EQ(static_cast<const wchar_t*>(String<wchar_t>(static_cast<const char*>(nullptr))),
              nullptr);

    ASSERT_TRUE(CopyToNewTCS(wide, length, ""));
    EXPECT_EQ(length, 1u);
    EXPECT_EQ(wide[0], L'\0');
    ::operator delete(wide);

    if (!IsWesternCodePage())
        GTEST_SKIP() << "active code page " << GetACP();
    ASSERT_TRUE(CopyToNewWCS(wide, length, "caf\xe9"));
    EXPECT_EQ(length, 5u);
    EXPECT_STREQ(wide, L"caf\u00e9");
    ::operator delete(wide);
    EXPECT_STREQ(String<wchar_t>("\xe0 la"), L"\u00e0 la");
}
