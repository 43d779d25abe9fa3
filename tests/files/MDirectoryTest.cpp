#include "MDirectory.h"

#include <gtest/gtest.h>

#include <cstdio>
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

TEST(MDirectoryTest, BlockReadAndWrite) {
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    const long written[3] = {1, -2, 0x12345678};
    EXPECT_EQ(fwrite_long(written, sizeof(long), 3, file), 3u);
    std::rewind(file);
    long read[4] = {};
    EXPECT_EQ(fread_long(read, sizeof(long), 4, file), 3u) << "only three were there";
    EXPECT_EQ(read[1], -2);
    EXPECT_EQ(read[2], 0x12345678);
    std::fclose(file);
}
