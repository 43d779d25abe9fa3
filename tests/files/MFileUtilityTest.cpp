#include "MFileUtility.h"

#include <gtest/gtest.h>

#include "MFileName.h"

// The two repairs differ: MAKE_SAFE also replaces '$' and never deletes, FixFileName deletes at
// the start, one character of its list after the other. Separators never reach MAKE_SAFE, as
// they end a file name.
TEST(MFileUtilityTest, FixFileNameAndMakeSafeRepairDifferently) {
    struct {
        const wchar_t* name;
        const wchar_t* safe; // null: no file name of that text
        const wchar_t* fixed;
    } const cases[] = {
        {L"$a:b*c?d\"e<f>g|h", L"_a_b_c_d_e_f_g_h", L"$a_b_c_d_e_f_g_h"},
        {L":x", L"_x", L"x"},
        {L"plain", L"plain", L"plain"},
        // The backslash is replaced before the asterisk reaches the front and is deleted.
        {L"*\\x", nullptr, L"_x"},
        {L"\\*x", nullptr, L"x"},
        {L"///", nullptr, L""},
    };
    for (const auto& c : cases) {
        std::wstring fixed = c.name;
        const bool changed = MFileUtility::FixFileName(fixed);
        EXPECT_EQ(changed, fixed != c.name) << c.name;
        EXPECT_EQ(fixed, c.fixed) << c.name;
        if (!c.safe)
            continue;
        MFileName name((L"C:\\d\\" + std::wstring(c.name) + L".t?x").c_str());
        EXPECT_EQ(name.IsSafe(), std::wstring(c.name) == c.safe) << c.name;
        name.MAKE_SAFE();
        EXPECT_STREQ(name.GET_FILE_PART(), c.safe);
        EXPECT_STREQ(name.GET_EXT_PART(), L".t?x") << "the extension is left alone";
    }

    EXPECT_FALSE(MFileName(L"C:\\d\\", true).IsSafe()) << "no file name";
    MFileName longName(L"", L"", std::wstring(300, L'n').c_str(), L".x");
    EXPECT_FALSE(longName.IsSafe());
    longName.MAKE_SAFE();
    EXPECT_EQ(std::wstring(longName.GET_FILE_PART()).size(), 256u);
    EXPECT_TRUE(longName.IsSafe());
}
