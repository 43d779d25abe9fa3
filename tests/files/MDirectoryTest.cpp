#include "MDirectory.h"

#include <gtest/gtest.h>

#include <tuple>

TEST(MDirectoryTest, PathHelpers) {
    // Path, AssurePath's result, AssurePathAppend's with the tail "\x" and with "y/z".
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*> cases[] = {
        {L"", L"", L"x", L"y/z"},
        {L"a/b", L"a\\b\\", L"a\\b\\x", L"a\\b\\y/z"},
        {L"C:\\d\\", L"C:\\d\\", L"C:\\d\\x", L"C:\\d\\y/z"},
        {L"/", L"\\", L"\\x", L"\\y/z"},
    };
    for (const auto& [path, assured, withSeparator, withoutSeparator] : cases) {
        CString text = path;
        AssurePath(text);
        EXPECT_STREQ(text, assured) << path;
        for (const auto& [tail, expected] :
             {std::pair{L"\\x", withSeparator}, std::pair{L"y/z", withoutSeparator}}) {
            CString appended = path;
            AssurePathAppend(appended, tail);
            EXPECT_STREQ(appended, expected) << path << " + " << tail;
        }
    }
    CString untouched = L"a";
    AssurePathAppend(untouched, nullptr);
    EXPECT_STREQ(untouched, L"a\\");

    for (const wchar_t* absolute : {L"C:\\x", L"?:/", L"\\\\server\\share", L"//x"})
        EXPECT_TRUE(IsAbsolutePath(absolute)) << absolute;
    for (const wchar_t* relative : {L"\\x", L"C:x", L"C:", L"", L"/\\x", L"x\\\\y"})
        EXPECT_FALSE(IsAbsolutePath(relative)) << relative;
    EXPECT_FALSE(IsAbsolutePath(nullptr));
}
