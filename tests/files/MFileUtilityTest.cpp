#include "MFileUtility.h"

#include <gtest/gtest.h>

#include <tuple>

#include "MFileName.h"

// The two repairs differ: MAKE_SAFE also replaces '$' and never deletes, FixFileName deletes at
// the start, one character of its list after the other. Separators never reach MAKE_SAFE, as
// they end a file name.
TEST(MFileUtilityTest, FixFileNameAndMakeSafeRepairDifferently) {
    // Name, MAKE_SAFE's file part (null: no file name of that text), FixFileName's result. In
    // "*\\x" the backslash is replaced before the asterisk reaches the front and is deleted.
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"$a:b*c?d\"e<f>g|h", L"_a_b_c_d_e_f_g_h", L"$a_b_c_d_e_f_g_h"},
        {L":x", L"_x", L"x"},
        {L"plain", L"plain", L"plain"},
        {L"*\\x", nullptr, L"_x"},
        {L"\\*x", nullptr, L"x"},
        {L"///", nullptr, L""}};
    for (const auto& [text, safe, fixed] : cases) {
        std::wstring name = text;
        const bool changed = MFileUtility::FixFileName(name);
        EXPECT_EQ(changed, name != text) << text;
        EXPECT_EQ(name, fixed) << text;
        if (!safe)
            continue;
        MFileName file((L"C:\\d\\" + name.assign(text) + L".t?x").c_str());
        EXPECT_EQ(file.IsSafe(), name == safe) << text;
        file.MAKE_SAFE();
        EXPECT_STREQ(file.GET_FILE_PART(), safe);
        EXPECT_STREQ(file.GET_EXT_PART(), L".t?x") << "the extension is left alone";
    }

    EXPECT_FALSE(MFileName(L"C:\\d\\", true).IsSafe()) << "no file name";
    MFileName longName(L"", L"", std::wstring(300, L'n').c_str(), L".x");
    EXPECT_FALSE(longName.IsSafe());
    longName.MAKE_SAFE();
    EXPECT_EQ(std::wstring(longName.GET_FILE_PART()).size(), 256u);
    EXPECT_TRUE(longName.IsSafe());
}
