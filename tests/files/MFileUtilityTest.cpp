#include "MFileUtility.h"

#include <gtest/gtest.h>

TEST(MFileUtilityTest, FixesFileNames) {
    struct {
        const wchar_t* before;
        const wchar_t* after;
        bool changed;
    } const cases[] = {
        {L"a:b", L"a_b", true},
        {L"\\\\x", L"x", true},
        {L"<a", L"a", true},
        {L"plain$name.txt", L"plain$name.txt", false},
        {L"", L"", false},
        {L"a\\b/c*d:e?f<g>h|i\"j", L"a_b_c_d_e_f_g_h_i_j", true},
        // One character of the list after the other: the backslash is replaced before the
        // asterisk reaches the front and is deleted.
        {L"*\\x", L"_x", true},
        {L"\\*x", L"x", true},
        {L"///", L"", true},
    };
    for (const auto& c : cases) {
        std::wstring name = c.before;
        EXPECT_EQ(MFileUtility::FixFileName(name), c.changed) << c.before;
        EXPECT_EQ(name, c.after) << c.before;
    }
}
