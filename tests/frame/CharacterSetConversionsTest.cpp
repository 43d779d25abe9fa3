#include <gtest/gtest.h>

#include <string>

#include "CharacterSetConversions.h"

#ifdef _WIN32
#include <windows.h>
#endif

using namespace CharacterSetConversions;

namespace {

// Compares a new array, terminator included, with `expected` and releases it as callers must.
template <class Char>
void ExpectCopied(bool copied, Char* const& out, const size_t& length, const Char* expected) {
    ASSERT_TRUE(copied);
    EXPECT_EQ(std::basic_string<Char>(out, length),
              std::basic_string<Char>(expected, std::char_traits<Char>::length(expected) + 1));
    ::operator delete(out);
}

} // namespace

TEST(CharacterSetConversions, CopiesCountTheTerminatorAndANullSourceChangesNothing) {
    wchar_t* wide = nullptr;
    char* narrow = nullptr;
    size_t length = 0;
    ExpectCopied(CopyToNewWCS(wide, length, std::wstring(L"wide")), wide, length, L"wide");
    ExpectCopied(CopyToNewWCS(wide, length, CString(L"")), wide, length, L"");
    ExpectCopied(CopyToNewWCS(wide, length, MString(L"m")), wide, length, L"m");
    ExpectCopied(CopyToNewTCS(wide, length, L"tcs"), wide, length, L"tcs");
    ExpectCopied(CopyToNewMBCS(narrow, length, "narrow"), narrow, length, "narrow");

    // A failed copy leaves both outputs alone.
    wchar_t wideMarker = L'm';
    char narrowMarker = 'm';
    wide = &wideMarker, narrow = &narrowMarker, length = 42;
    EXPECT_FALSE(CopyToNewWCS(wide, length, static_cast<const wchar_t*>(nullptr)));
    EXPECT_FALSE(CopyToNewMBCS(narrow, length, static_cast<const char*>(nullptr)));
#ifdef _WIN32
    EXPECT_FALSE(CopyToNewMBCS(narrow, length, nullptr, nullptr));
    EXPECT_FALSE(CopyToNewWCS(wide, length, static_cast<const char*>(nullptr)));
    EXPECT_FALSE(CopyToNewTCS(wide, length, static_cast<const char*>(nullptr)));
    EXPECT_EQ(static_cast<const wchar_t*>(String<wchar_t>(static_cast<const char*>(nullptr))),
              nullptr);
#endif
    EXPECT_EQ(wide, &wideMarker);
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
    char narrow[] = "narrow";
    String<char> copy(narrow);
    narrow[0] = 'X';
    EXPECT_STREQ(copy, "narrow");
    EXPECT_STREQ(String<wchar_t>(CString(L"cs")), L"cs");
    EXPECT_STREQ(String<wchar_t>(MString(L"ms")), L"ms");
    EXPECT_STREQ(String<wchar_t>(L"ptr", '?'), L"ptr");
}

#ifdef _WIN32
TEST(CharacterSetConversions, ActiveCodePageBothWays) {
    char* narrow = nullptr;
    wchar_t* wide = nullptr;
    size_t length = 0;
    ExpectCopied(CopyToNewMBCS(narrow, length, std::wstring()), narrow, length, "");
    ExpectCopied(CopyToNewMBCS(narrow, length, CString(L"plain")), narrow, length, "plain");
    ExpectCopied(CopyToNewTCS(wide, length, ""), wide, length, L"");

    // Narrow text of the code page most installations use.
    if (GetACP() != 1252)
        GTEST_SKIP() << "active code page " << GetACP();
    const char hash = '#';
    ExpectCopied(CopyToNewMBCS(narrow, length, L"d\u00e9j\u00e0 \u4e2d", &hash), narrow, length,
                 "d\xe9j\xe0 #");
    ExpectCopied(CopyToNewMBCS(narrow, length, MString(L"\u4e2d")), narrow, length, "?");
    ExpectCopied(CopyToNewWCS(wide, length, "caf\xe9"), wide, length, L"caf\u00e9");
    EXPECT_STREQ(String<char>(L"x\u4e2d", '*'), "x*");
    EXPECT_STREQ(String<char>(std::wstring(L"\u00e9")), "\xe9");
    EXPECT_STREQ(String<wchar_t>("\xe0 la"), L"\u00e0 la");
}
#endif
