#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "CharacterSetConversions.h"

using namespace CharacterSetConversions;

TEST(CharacterSetConversions, CopiesCarryTheTerminatorAndAreTheCallers) {
    wchar_t* wide = nullptr;
    size_t length = 0;
    ASSERT_TRUE(CopyToNewWCS(wide, length, std::wstring(L"wide text")));
    EXPECT_EQ(length, 10u);
    EXPECT_STREQ(wide, L"wide text");
    ::operator delete(wide);

    ASSERT_TRUE(CopyToNewWCS(wide, length, CString(L"")));
    EXPECT_EQ(length, 1u);
    EXPECT_EQ(wide[0], L'\0');
    ::operator delete(wide);

    ASSERT_TRUE(CopyToNewWCS(wide, length, MString(L"m")));
    EXPECT_EQ(length, 2u);
    EXPECT_STREQ(wide, L"m");
    ::operator delete(wide);

    ASSERT_TRUE(CopyToNewTCS(wide, length, L"tcs"));
    EXPECT_EQ(length, 4u);
    EXPECT_STREQ(wide, L"tcs");
    ::operator delete(wide);

    char* narrow = nullptr;
    ASSERT_TRUE(CopyToNewMBCS(narrow, length, "narrow"));
    EXPECT_EQ(length, 7u);
    EXPECT_STREQ(narrow, "narrow");
    ::operator delete(narrow);
}

TEST(CharacterSetConversions, NullSourceLeavesTheOutputsAlone) {
    wchar_t marker = L'm';
    wchar_t* wide = &marker;
    size_t length = 42;
    EXPECT_FALSE(CopyToNewWCS(wide, length, static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(wide, &marker);
    EXPECT_EQ(length, 42u);

    char narrowMarker = 'm';
    char* narrow = &narrowMarker;
    EXPECT_FALSE(CopyToNewMBCS(narrow, length, static_cast<const char*>(nullptr)));
    EXPECT_EQ(narrow, &narrowMarker);
    EXPECT_EQ(length, 42u);

    EXPECT_EQ(static_cast<const char*>(String<char>(static_cast<const char*>(nullptr))), nullptr);
    EXPECT_EQ(static_cast<const wchar_t*>(String<wchar_t>(nullptr, 'x')), nullptr);
}

TEST(CharacterSetConversions, StringHoldsItsOwnCopy) {
    std::wstring source = L"held";
    String<wchar_t> held(source);
    source[0] = L'X';
    EXPECT_STREQ(held, L"held");
    EXPECT_STREQ(String<wchar_t>(CString(L"cs")), L"cs");
    EXPECT_STREQ(String<wchar_t>(MString(L"ms")), L"ms");
    EXPECT_STREQ(String<wchar_t>(L"ptr", '?'), L"ptr");

    char narrow[] = "narrow";
    String<char> copy(narrow);
    narrow[0] = 'X';
    EXPECT_STREQ(copy, "narrow");
}
