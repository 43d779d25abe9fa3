// Tagged files written byte by byte, read back through MTag and MTagList; conversion checked
// on disk, with failures injected through the kit's file layer.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "MFile.h"
#include "MFileName.h"
#include "MTagList.h"
#include "TagBytes.h"
#include "TagRewriteTest.h"

namespace {

// The elements as "NAME@header+length" for one readable comparison.
std::vector<std::string> Layout(const MTagList& list) {
    std::vector<std::string> out;
    for (const MTag& tag : list.GetTags())
        out.push_back(std::string(tag.m_name) + "@" + std::to_string(tag.m_header_pos) + "+" +
                      std::to_string(tag.m_length));
    return out;
}

class TagFileTest : public TempFolderTest {
protected:
    // Writes the bytes (after closing the file, which Windows would not let them replace) and
    // opens them for reading and writing.
    MFile& Open(const std::string& bytes, const std::wstring& name = L"tags.kel") {
        m_file.CLOSE();
        WriteRaw(name, bytes);
        EXPECT_TRUE(m_file.OPEN_UPDATE(Path(name).c_str()));
        return m_file;
    }

    MFile m_file;
};

class ConvertTest : public TagRewriteTest {};

} // namespace

TEST(MTagTest, NamesAndVersions) {
    // Names are cut to six characters; new tags take the version this library writes.
    EXPECT_STREQ("ABCDEF", MTag("ABCDEFGH", 3, 4).m_name);
    EXPECT_STREQ("", MTag(nullptr).m_name);
    MTag tag("X", 3, 4);
    tag.INIT("XY");
    EXPECT_STREQ("XY", tag.m_name);
    EXPECT_EQ(MTag::m_file_vmajor, tag.m_vmajor);

    // The minor version never counts; COMPARE's modes grade the majors.
    const MTag v20("BODY", 2, 0), v21("BODY", 2, 1), v3("BODY", 3, 0), other("MESH", 2, 0);
    EXPECT_TRUE(v20 == v21);
    EXPECT_FALSE(v20 == v3);
    const struct {
        const MTag& self;
        const MTag& against;
        int mode;
        bool expected;
    } cases[] = {{v20, v3, 0, true},  {v20, v3, 1, false}, {v3, v20, 1, true},
                 {v3, v20, 2, false}, {v21, v20, 2, true}, {v20, other, 0, false}};
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, c.self.COMPARE(c.against, c.mode))
            << c.self.m_name << " " << int(c.self.m_vmajor) << " against " << c.against.m_name
            << " " << int(c.against.m_vmajor) << " mode " << c.mode;
}

TEST_F(TagFileTest, HeaderWriteReadAndPatch) {
    MFile& file = Open("prefix");
    ASSERT_TRUE(file.SEEK_FROM_END());
    MTag tag("SIXSIX", 2, 7);
    ASSERT_TRUE(tag.WRITE(file));
    EXPECT_EQ(6, tag.m_header_pos);
    EXPECT_EQ(18, tag.m_data_pos);
    ASSERT_EQ(5u, file.WRITE("hello", 5));
    ASSERT_TRUE(tag.UPDATE_SKIP(file));
    EXPECT_EQ(23, file.TELL());
    EXPECT_EQ(5, tag.m_length);

    // Patched once: more data changes nothing until UNDO_UPDATE.
    ASSERT_EQ(3u, file.WRITE("!!!", 3));
    EXPECT_TRUE(tag.UPDATE_SKIP(file));
    file.CLOSE();
    EXPECT_EQ("prefix" + Header("SIXSIX", 2, 7, 5) + "hello!!!", ReadRaw(L"tags.kel"));
    ASSERT_TRUE(file.OPEN_UPDATE(Path(L"tags.kel").c_str()));
    ASSERT_TRUE(file.SEEK_FROM_END());
    tag.UNDO_UPDATE();
    ASSERT_TRUE(tag.UPDATE_SKIP(file));
    file.CLOSE();
    EXPECT_EQ("prefix" + Header("SIXSIX", 2, 7, 8) + "hello!!!", ReadRaw(L"tags.kel"));

    // A negative length is widened with its sign; a short header is not read.
    Open(Header("NEG", 1, 2, -2) + "short");
    MTag read;
    ASSERT_TRUE(read.READ(m_file));
    EXPECT_STREQ("NEG", read.m_name);
    EXPECT_EQ(1, read.m_vmajor);
    EXPECT_EQ(2, read.m_vminor);
    EXPECT_EQ(-2, read.m_length);
    EXPECT_FALSE(read.READ(m_file));
}

TEST_F(TagFileTest, BuildTagListChecksTheHeadAndRestoresThePosition) {
    MTagList list;
    MFile& file = Open(Header("KELCOX", 2, 1, 0) + Tag("BODY", 2, "abc"));
    ASSERT_TRUE(file.SEEK(5));
    EXPECT_FALSE(list.BUILD_TAG_LIST(file));
    EXPECT_EQ(5, file.TELL());
    file.CLOSE();
    EXPECT_FALSE(list.BUILD_TAG_LIST(file));

    // A second head tag replaces the first; a zero-length tag is followed by its siblings.
    Open(Head(1, 5) + Tag("BODY", 2, "abc") + Tag("EMPTY", 2, "") + Head(1, 6) +
         Tag("MESH", 2, "0123456789"));
    ASSERT_TRUE(m_file.SEEK(7));
    ASSERT_TRUE(list.BUILD_TAG_LIST(m_file));
    EXPECT_EQ(7, m_file.TELL());
    EXPECT_EQ((std::vector<std::string>{"BODY@12+3", "EMPTY@27+0", "MESH@51+10"}), Layout(list));
    EXPECT_EQ(39, list.GET_HEAD_TAG().m_header_pos);
    EXPECT_EQ(6, list.GET_HEAD_TAG().m_vminor);

    // The overlong last tag is listed (the flat list reads no further); a negative length ends
    // the list instead of leading back.
    Open(Head(2, 1) + Tag("A", 2, "x") + Header("LONG", 2, 0, 1000) + "xy");
    ASSERT_TRUE(list.BUILD_TAG_LIST(m_file));
    EXPECT_EQ((std::vector<std::string>{"A@12+1", "LONG@25+1000"}), Layout(list));
    Open(Head(2, 1) + Tag("A", 2, "x") + Header("BACK", 2, 0, -25) + Tag("B", 2, ""));
    ASSERT_TRUE(list.BUILD_TAG_LIST(m_file));
    EXPECT_EQ((std::vector<std::string>{"A@12+1"}), Layout(list));

    // From the current position, until the limit is reached, position not restored.
    Open(Head(2, 1) + Tag("A", 2, "12345") + Tag("B", 2, "") + Tag("C", 2, "1"));
    ASSERT_TRUE(m_file.SEEK(12));
    ASSERT_TRUE(list.BUILD_TAG_LIST(m_file, 20));
    EXPECT_EQ((std::vector<std::string>{"A@12+5", "B@29+0"}), Layout(list));
    EXPECT_EQ(41, m_file.TELL());
}

TEST_F(TagFileTest, BuildTagTreeListsNestedTagsInPreOrder) {
    const std::string leaf = Tag("LEAF", 2, "");
    const std::string mesh = Tag("MESH", 2, Tag("DATA", 2, Tag("NOT", 2, "child")) + leaf);
    MFile& file = Open(Head(2, 1) + Tag("BODY", 2, mesh + Tag("MUID", 2, leaf)) + leaf);
    MTagList list;
    list.BUILD_TAG_TREE(file, 0, -1);
    EXPECT_EQ((std::vector<std::string>{"BODY@12+77", "MESH@24+41", "DATA@36+17", "LEAF@65+0",
                                        "MUID@77+12", "LEAF@101+0"}),
              Layout(list));
    EXPECT_EQ(0, list.GET_HEAD_TAG().m_header_pos);

    // A range inside the file, and one ending in the middle of a tag.
    list.BUILD_TAG_TREE(file, 24, 77);
    EXPECT_EQ((std::vector<std::string>{"MESH@24+41", "DATA@36+17", "LEAF@65+0"}), Layout(list));
    list.BUILD_TAG_TREE(file, 12, 50);
    EXPECT_TRUE(Layout(list).empty());

    // The data of one tag, one level deep or nested; raw and first-format tags hold none.
    list.BUILD_TAG_TREE(file, 0, -1);
    MTag part = list.GetTags()[0];
    ASSERT_TRUE(file.SEEK(3));
    ASSERT_TRUE(list.BUILD_TAG_LIST(file, part, false));
    EXPECT_EQ((std::vector<std::string>{"MESH@24+41", "MUID@77+12"}), Layout(list));
    ASSERT_TRUE(list.BUILD_TAG_LIST(file, part, true));
    EXPECT_EQ((std::vector<std::string>{"MESH@24+41", "DATA@36+17", "LEAF@65+0", "MUID@77+12"}),
              Layout(list));
    EXPECT_EQ(3, file.TELL());
    for (MTag raw : {MTag("DATA", 2, 0), MTag("BODY", 1, 0)}) {
        raw.m_data_pos = 24;
        raw.m_length = 77;
        ASSERT_TRUE(list.BUILD_TAG_LIST(file, raw, true)) << raw.m_name;
        EXPECT_EQ(0u, list.SIZE()) << raw.m_name << " " << int(raw.m_vmajor);
    }
    TestingUtility log;
    MTag unplaced("BODY");
    EXPECT_FALSE(list.BUILD_TAG_LIST(file, unplaced, false));
    EXPECT_EQ(std::vector<std::wstring>{L"In MTagList::CONVERT() : Could not find given tag data "
                                        L"position"},
              log.GetTexts());
}

TEST_F(TagFileTest, BuildTagTreeStopsOnHostileLengths) {
    MTagList list;
    // Beyond the end of the file: the walk ends at that tag without adding it.
    list.BUILD_TAG_TREE(Open(Head(2, 1) + Tag("A", 2, "") + Header("LONG", 2, 0, 13) + "123"), 0,
                        -1);
    EXPECT_EQ((std::vector<std::string>{"A@12+0"}), Layout(list));
    // A negative length, and a child reaching past its parent.
    list.BUILD_TAG_TREE(Open(Head(2, 1) + Header("NEG", 2, 0, -24) + Tag("B", 2, "")), 0, -1);
    EXPECT_TRUE(Layout(list).empty());
    list.BUILD_TAG_TREE(
        Open(Head(2, 1) + Tag("OUTER", 2, Header("WIDE", 2, 0, 4) + "12") + Tag("C", 2, "34")), 0,
        -1);
    EXPECT_EQ((std::vector<std::string>{"OUTER@12+14", "C@38+2"}), Layout(list));

    // 100 levels of nesting: listed down to the bound, no deeper.
    std::string nested;
    for (int level = 0; level < 100; ++level)
        nested = Tag("N", 2, nested);
    list.BUILD_TAG_TREE(Open(Head(2, 1) + nested), 0, -1);
    EXPECT_EQ(static_cast<unsigned long long>(MTagList::MAX_TREE_DEPTH), list.SIZE());
}

TEST_F(TagFileTest, FindNextAndRemove) {
    MFile& file = Open(Head(2, 1) + Tag("BODY", 2, "a") + Tag("BODY", 1, "bb") +
                       Tag("MESH", 2, "ccc") + Tag("BODY", 2, "dddd"));
    MTagList list;
    ASSERT_TRUE(list.BUILD_TAG_LIST(file));
    MTag wanted("BODY", 2, 9);
    MTag* first = list.FIND_TAG(file, nullptr, wanted, 0, true);
    ASSERT_EQ(&list.GetTags()[0], first);
    EXPECT_EQ(24, file.TELL());
    EXPECT_EQ(0, wanted.m_vminor) << "the element is copied into the tag";
    EXPECT_EQ(&list.GetTags()[3], list.FIND_TAG(file, first, wanted, 0, false));
    EXPECT_EQ(nullptr, list.FIND_TAG(file, &list.GetTags()[3], wanted, 0, false));
    MTag stranger("BODY");
    EXPECT_EQ(nullptr, list.FIND_TAG(file, &stranger, wanted, 0, false));
    EXPECT_EQ(nullptr, list.FIND_TAG(file, nullptr, wanted, 2, false));
    MTag unnamed("", 2, 0);
    EXPECT_EQ(nullptr, list.FIND_TAG(file, nullptr, unnamed, 0, false));

    // A version mode of its own: a lower major is accepted.
    MTag v3("BODY", 3, 0);
    EXPECT_EQ(&list.GetTags()[0], list.FIND_TAG_EX(file, nullptr, v3, 1, 0, false));

    EXPECT_EQ(&list.GetTags()[0], list.NEXT_TAG(file, nullptr, false));
    EXPECT_EQ(&list.GetTags()[2], list.NEXT_TAG(file, &list.GetTags()[1], true));
    EXPECT_EQ(39 + 12, file.TELL());
    EXPECT_EQ(nullptr, list.NEXT_TAG(file, &list.GetTags()[3], false));

    // Kind 1 removes only what is not written in this pass; kind 0 the rest of a name.
    list.NEXT_TAG(file, nullptr, false)->m_written = true;
    MTag part("BODY", 2, 0);
    EXPECT_TRUE(list.REMOVE_TAGS(part, 1));
    EXPECT_EQ((std::vector<std::string>{"BODY@12+1", "BODY@25+2", "MESH@39+3"}), Layout(list));
    EXPECT_FALSE(list.REMOVE_TAGS(part, 1));
    EXPECT_FALSE(list.REMOVE_TAGS(part, 2));
    EXPECT_TRUE(list.REMOVE_TAGS(part, 0));
    EXPECT_EQ((std::vector<std::string>{"BODY@25+2", "MESH@39+3"}), Layout(list));
}

// Rewriting a file tag by tag: repeated names are found in order as they are written, lengths
// are back-patched, and a tag the list does not hold goes out without its name.
TEST_F(TagFileTest, RewriteStepsThroughRepeatedTags) {
    MFile& source =
        Open(Head(2, 1) + Tag("BODY", 2, "first") + Tag("MESH", 2, "m") + Tag("BODY", 2, "second"));
    MTagList list;
    ASSERT_TRUE(list.BUILD_TAG_LIST(source));
    MFile target;
    ASSERT_TRUE(target.CREATE(Path(L"out.kel").c_str()));
    ASSERT_TRUE(list.GET_HEAD_TAG().WRITE(target));
    ASSERT_TRUE(list.GET_HEAD_TAG().UPDATE_SKIP(target));

    std::vector<std::string> seen;
    MTag find("BODY", 2, 0);
    for (MTag* at = nullptr; (at = list.FIND_TAG(source, nullptr, find, 1, true));) {
        std::string data(static_cast<size_t>(find.m_length), '\0');
        ASSERT_EQ(data.size(), source.READ(&data[0], data.size()));
        seen.push_back(data);
        MTag write("BODY", 2, 5);
        ASSERT_TRUE(list.WRITE_TAG_BEGIN(target, write));
        EXPECT_TRUE(at->m_written);
        EXPECT_EQ(0, at->m_length);
        const std::string upper = data + "+";
        ASSERT_EQ(upper.size(), target.WRITE(upper.data(), upper.size()));
        ASSERT_TRUE(list.WRITE_TAG_END(target, write));
        EXPECT_EQ(static_cast<long long>(upper.size()), write.m_length);
        ASSERT_LE(seen.size(), 2u);
    }
    EXPECT_EQ((std::vector<std::string>{"first", "second"}), seen);
    MTag fresh("NEW", 2, 0);
    ASSERT_TRUE(list.WRITE_TAG_BEGIN(target, fresh));
    ASSERT_EQ(2u, target.WRITE("nw", 2));
    ASSERT_TRUE(list.WRITE_TAG_END(target, fresh));
    EXPECT_EQ(4u, list.SIZE());
    target.CLOSE();
    // A tag found in the list keeps its own version.
    EXPECT_EQ(Head(2, 1) + Header("BODY", 2, 0, 6) + "first+" + Header("BODY", 2, 0, 7) +
                  "second+" + Header("", 2, 0, 2) + "nw",
              ReadRaw(L"out.kel"));
}

TEST_F(ConvertTest, ConvertKeepsEveryTagsData) {
    const std::string body = Tag("BODY", 1, Tag("MESH", 1, std::string(300000, 'm'))) +
                             Tag("DATA", 1, "raw") + Tag("EMPTY", 1, "");
    WriteRaw(L"old.kel", Head(1, 3) + body);
    WriteRaw(L"same.kel", Head(2, 0) + body);
    WriteRaw(L"new.kel", Head(3, 0) + body);
    WriteRaw(L"plain.txt", "not a tagged file");
    TestingUtility log;
    MFileName old(L"old.kel"), same(L"same.kel"), newer(L"new.kel"), plain(L"plain.txt"),
        missing(L"missing.kel");

    ASSERT_TRUE(MTagList::CONVERT(old, 0, 0));
    EXPECT_EQ(Head(2, 1) + body, ReadRaw(L"old.kel"));
    EXPECT_TRUE(MTagList::CONVERT(same, 0, 0));
    EXPECT_EQ(Head(2, 0) + body, ReadRaw(L"same.kel"));
    EXPECT_FALSE(MTagList::CONVERT(newer, 2, 1));
    EXPECT_EQ(Head(3, 0) + body, ReadRaw(L"new.kel"));
    EXPECT_FALSE(MTagList::CONVERT(plain, 0, 0));
    EXPECT_FALSE(MTagList::CONVERT(missing, 0, 0));
    const std::wstring prefix = L"In MTagList::CONVERT() : ";
    EXPECT_EQ((std::vector<std::wstring>{
                  prefix + L"File '" + L"same.kel" + L"' already contains version V2.0",
                  prefix + L"File '" + L"new.kel" +
                      L"' contains a newer version number V3.0, cannot process !",
                  prefix + L"Could not read header tag from '" + L"plain.txt",
                  prefix + L"Could not open file '" + L"missing.kel"}),
              log.GetTexts());
    // Nothing is left beside the files.
    EXPECT_EQ(4, std::distance(std::filesystem::directory_iterator(m_folder),
                               std::filesystem::directory_iterator()));
}

// Every call of the file layer during a conversion fails in turn, or the user aborts before
// it: the conversion either fails with the original back in place, byte for byte, or completes.
TEST_F(ConvertTest, ConvertRollsBackWhenTheDiskFailsOrTheUserAborts) {
    std::string body;
    for (int i = 0; i < 6; ++i)
        body += Tag("BODY", 1, std::string(300000 + i, static_cast<char>('a' + i)));
    // A tag of several MiB, so that the abort flag is polled during the copy.
    body += Tag("MESH", 1, std::string(3u << 20, 'm'));
    const std::string original = Head(1, 0) + body, converted = Head(2, 1) + body;
    MFileName file(L"disk.kel");
    auto convert = [&] { return MTagList::CONVERT(file, 0, 0); };

    TestingUtility log;
    EXPECT_LE(5, RunIntoEachCall(Injected::Failure, L"disk.kel", original, converted, L"convert",
                                 convert))
        << "enough calls to fail between tags";
    EXPECT_TRUE(Logged(log, L"In MTagList::CONVERT() : Error writing to file 'disk.kel"));
    // An abort up to the last look at the flag, before the new file is committed, keeps the
    // original; the copy looks at it more than once.
    EXPECT_LE(
        5, RunIntoEachCall(Injected::Abort, L"disk.kel", original, converted, L"convert", convert));
    EXPECT_TRUE(Logged(
        log,
        L"In MTagList::CONVERT() : Aborted by the user, the file 'disk.kel' is left as it was"));
}
