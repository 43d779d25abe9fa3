// keltool tags, convert and tag as a user runs them, on files written byte by byte: one
// success and one failure each, the library behind them having tests of its own.
#include <gtest/gtest.h>

#include "KeltoolProcess.h"
#include "StdBase.h"
#include "TagBytes.h"
#include "TempFolder.h"

class TagKeltoolTest : public TempFolderTest {
protected:
    std::wstring Make(const std::wstring& name, const std::string& bytes) {
        WriteRaw(name, bytes);
        return Path(name);
    }

    KeltoolResult Run(const std::vector<std::wstring>& arguments) {
        return RunKeltool(arguments, m_folder / L"scratch");
    }
};

TEST_F(TagKeltoolTest, TagsPrintsTheTreeAndConvertRewrites) {
    const std::string body =
        Tag("BODY", 1, Tag("MESH", 1, Tag("DATA", 1, "raw") + Tag("LEAF", 1, ""))) +
        Tag(std::string("N\x01", 2), 1, "xy");
    const std::wstring file = Make(L"part.kel", Head(1, 3) + body);
    KeltoolResult result = Run({L"tags", file});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ("KELCOM 1.3  offset 0  length 0\r\n"
              "BODY 1.0  offset 12  length 39\r\n"
              "  MESH 1.0  offset 24  length 27\r\n"
              "    DATA 1.0  offset 36  length 3\r\n"
              "    LEAF 1.0  offset 51  length 0\r\n"
              "N\\x01 1.0  offset 63  length 2\r\n",
              result.out);

    result = Run({L"convert", file});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    const std::string name = StdBase::ConvertUnicodeToUtf8(file);
    EXPECT_EQ(name + ": converted from version 1.3 to 2.1\r\n", result.out);
    EXPECT_EQ(Head(2, 1) + body, ReadAll(file));

    // A newer file is refused with the library's reason; the file stays as it is.
    result = Run({L"convert", file, L"1", L"0"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos,
              result.err.find("In MTagList::CONVERT() : File '" + name +
                              "' contains a newer version number V2.1, cannot process !"))
        << result.err;
    EXPECT_EQ(Head(2, 1) + body, ReadAll(file));

    // A damaged file is listed up to the damage.
    const std::wstring cut = Make(L"cut.kel", Head(2, 1) + Header("BODY", 2, 0, 100) + "xy");
    result = Run({L"tags", cut});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_EQ("KELCOM 2.1  offset 0  length 0\r\n", result.out);
    EXPECT_NE(std::string::npos, result.err.find("the bytes from offset 12 on are no complete tag"))
        << result.err;
    EXPECT_EQ(2u, Run({L"convert", cut, L"256", L"0"}).exitCode);
}

TEST_F(TagKeltoolTest, TagReplacesRemovesAndInserts) {
    const std::string head = Head(2, 1), note = Tag("NOTE", 2, "abc");
    auto file = [&](const std::string& firstData, const std::string& mesh2) {
        return head + Tag("BODY", 2, Tag("MESH", 2, Tag("DATA", 2, firstData)) + note) +
               Tag("BODY", 2, mesh2);
    };
    const std::string mesh2 = Tag("MESH", 1, Tag("DATA", 1, "second"));
    const std::wstring path = Make(L"part.kel", file("first", mesh2));
    const std::wstring data = Make(L"new.bin", "replacement data");
    const std::string name = StdBase::ConvertUnicodeToUtf8(path);

    KeltoolResult result = Run({L"tag", L"replace", path, L"DATA", data});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(name + ": replaced the data of DATA\r\n", result.out);
    EXPECT_EQ(file("replacement data", mesh2), ReadAll(path));

    // The second MESH, of major version 1, by number and by version.
    result = Run({L"tag", L"insert", path, L"MESH#2", L"inside", L"EXTRA", data});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(file("replacement data",
                   Tag("MESH", 1,
                       Tag("DATA", 1, "second") + Header("EXTRA", 2, 1, 16) + "replacement data")),
              ReadAll(path));
    result = Run({L"tag", L"remove", path, L"MESH:1"});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(file("replacement data", ""), ReadAll(path));

    result = Run({L"tag", L"remove", path, L"DATA#3"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("has no tag DATA#3")) << result.err;
    EXPECT_EQ(file("replacement data", ""), ReadAll(path));
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"tag", L"remove", path, L"DATA#0"},
          {L"tag", L"insert", path, L"DATA", L"below", L"X", data}})
        EXPECT_EQ(2u, Run(arguments).exitCode) << StdBase::ConvertUnicodeToUtf8(arguments[3]);
}
