// Tagged files rewritten through MFileTagReplacer, checked byte for byte against files written
// by hand: the edited tags as asked, every other byte unchanged, the lengths around an edit
// new; failures injected through the kit's file layer.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "MFileName.h"
#include "MFileTagReplacer.h"
#include "TagBytes.h"
#include "TagRewriteTest.h"

namespace {

// A file with tags at three depths, repeated names and an empty tag; built from its parts so
// that an expected file is the same expression with one part changed.
struct Sample {
    std::string data0 = "raw-zero", leaf = "", data1 = "raw-one!";
    std::string afterHead = "", beforeLeaf = "", mesh0Tail = "";
    std::string note = Tag("NOTE", 2, "abc"), tail = Tag("TAIL", 1, "end");

    std::string Bytes() const {
        const std::string mesh0 =
            Tag("MESH", 2, Tag("DATA", 2, data0) + beforeLeaf + Tag("LEAF", 2, leaf) + mesh0Tail);
        return Head(2, 1) + afterHead + Tag("BODY", 2, mesh0 + note) +
               Tag("BODY", 2, Tag("MESH", 2, Tag("DATA", 2, data1))) + tail;
    }
};

using Edits = std::function<void(MFileTagReplacer&, MFileTagged&)>;

class ReplacerTest : public TagRewriteTest {
protected:
    // Writes `original` as "t.kel", opens it, makes the edits and applies them; the file as it
    // is afterwards.
    std::string Edit(const std::string& original, const Edits& edits) {
        WriteRaw(L"t.kel", original);
        MFileTagReplacer replacer;
        EXPECT_TRUE(replacer.Open(MFileName(L"t.kel")));
        edits(replacer, replacer.GetFile());
        EXPECT_TRUE(replacer.Apply());
        EXPECT_EQ(0u, replacer.GetEditCount());
        return ReadRaw(L"t.kel");
    }

    static size_t Find(MFileTagged& file, const char* name, unsigned long occurrence) {
        const size_t index = file.Find(MTag(name), 0, occurrence);
        EXPECT_NE(MFileTagged::NONE, index) << name << " " << occurrence;
        return index;
    }
};

TEST_F(ReplacerTest, FileTaggedListsFindsAndReads) {
    WriteRaw(L"t.kel", Sample().Bytes());
    MFileTagged file;
    ASSERT_TRUE(file.Open(MFileName(L"t.kel")));
    const std::vector<std::string> names = {"KELCOM", "BODY", "MESH", "DATA", "LEAF",
                                            "NOTE",   "BODY", "MESH", "DATA", "TAIL"};
    const std::vector<int> depths = {0, 0, 1, 2, 2, 1, 0, 1, 2, 0};
    const std::vector<size_t> parents = {
        MFileTagged::NONE, MFileTagged::NONE, 1, 2, 2, 1, MFileTagged::NONE, 6, 7,
        MFileTagged::NONE};
    ASSERT_EQ(names.size(), file.GetCount());
    for (size_t i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(names[i], file.GetTag(i).m_name);
        EXPECT_EQ(depths[i], file.GetDepth(i));
        EXPECT_EQ(parents[i], file.GetParent(i));
    }
    EXPECT_EQ(file.GetSize(), file.GetTagsEnd());

    // By name, version and occurrence.
    EXPECT_EQ(3u, file.Find(MTag("DATA", 2, 0), 2, 0));
    EXPECT_EQ(8u, file.Find(MTag("DATA", 2, 7), 2, 1));
    EXPECT_EQ(MFileTagged::NONE, file.Find(MTag("DATA", 2, 0), 2, 2));
    EXPECT_EQ(MFileTagged::NONE, file.Find(MTag(""), 0, 0));

    std::vector<unsigned char> data;
    ASSERT_TRUE(file.ReadData(8, data));
    EXPECT_EQ("raw-one!", std::string(data.begin(), data.end()));
    ASSERT_TRUE(file.ReadData(4, data));
    EXPECT_TRUE(data.empty());
    EXPECT_FALSE(file.ReadData(10, data));

    // Bytes after the last whole tag belong to no tag.
    WriteRaw(L"cut.kel", Sample().Bytes() + Header("BODY", 2, 0, 50) + "short");
    ASSERT_TRUE(file.Open(MFileName(L"cut.kel")));
    EXPECT_EQ(10u, file.GetCount());
    EXPECT_EQ(file.GetSize() - 17, file.GetTagsEnd());
    WriteRaw(L"plain.txt", "no tagged file");
    EXPECT_FALSE(file.Open(MFileName(L"plain.txt")));
    EXPECT_FALSE(file.IsOpen());
}

// A call of the file layer that fails while the tags are listed makes Open fail: a walk cut
// short would miss a subtree and go on with the tags after it at wrong indices.
TEST_F(ReplacerTest, FileTaggedOpensOnlyAWholeList) {
    Sample sample;
    sample.data0.assign(300000, 'x'); // the headers lie far apart: each is read on its own
    WriteRaw(L"t.kel", sample.Bytes());
    long long calls = 0, failing = -1;
    const FileOs::Probe previous =
        FileOs::SetProbe([&](FileOs::Call, size_t) { return calls++ != failing; });
    MFileTagged file;
    EXPECT_TRUE(file.Open(MFileName(L"t.kel")));
    EXPECT_EQ(10u, file.GetCount());
    const long long total = calls;
    for (failing = 0; failing < total; ++failing) {
        calls = 0;
        EXPECT_FALSE(file.Open(MFileName(L"t.kel"))) << "call " << failing << " of " << total;
        EXPECT_FALSE(file.IsOpen()) << "call " << failing;
    }
    FileOs::SetProbe(previous);
}

TEST_F(ReplacerTest, EditsChangeTheirTagsAndTheLengthsAroundThem) {
    const Sample original;
    const MTag added("NEW", 2, 0);
    const std::string longer = "replaced by something longer";
    // The file edited in one way is the original with one part changed.
    Sample expected = original;
    auto check = [&](const Edits& edits) {
        EXPECT_EQ(expected.Bytes(), Edit(original.Bytes(), edits));
        expected = original;
    };
    expected.data1 = longer;
    check([&](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Replace(Find(f, "DATA", 1), longer.data(), longer.size()));
    });
    expected.data0 = "";
    check([](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Replace(Find(f, "DATA", 0), nullptr, 0));
    });
    // Before the leaf, inside the leaf (of length 0), after the last tag of the file.
    expected.beforeLeaf = Tag("NEW", 2, "x");
    check([&](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Insert(Find(f, "LEAF", 0), MFileTagReplacer::Before, added, "x", 1));
    });
    expected.leaf = Tag("NEW", 2, "yz");
    check([&](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Insert(Find(f, "LEAF", 0), MFileTagReplacer::Inside, added, "yz", 2));
    });
    expected.tail += Tag("NEW", 2, "");
    check([&](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Insert(Find(f, "TAIL", 0), MFileTagReplacer::After, added, "", 0));
    });

    // Several edits in one pass, some at one place: inside the first mesh (as its last child)
    // and after the leaf, which is its last child too, in the order asked; after the head; the
    // tail removed; a replacement from a file.
    WriteRaw(L"data.bin", std::string(70000, 'd'));
    expected.mesh0Tail = Tag("NEW", 2, "in") + Tag("NEW", 2, "after");
    expected.afterHead = Tag("NEW", 2, "first");
    expected.tail = "";
    expected.data1 = std::string(70000, 'd');
    check([&](MFileTagReplacer& r, MFileTagged& f) {
        EXPECT_TRUE(r.Insert(Find(f, "MESH", 0), MFileTagReplacer::Inside, added, "in", 2));
        EXPECT_TRUE(r.Remove(Find(f, "TAIL", 0)));
        EXPECT_TRUE(r.Insert(Find(f, "LEAF", 0), MFileTagReplacer::After, added, "after", 5));
        EXPECT_TRUE(r.Insert(0, MFileTagReplacer::After, added, "first", 5));
        EXPECT_TRUE(r.Replace(Find(f, "DATA", 1), MFileName(L"data.bin")));
        EXPECT_EQ(5u, r.GetEditCount());
    });

    // The replacer reads the file again after writing it.
    WriteRaw(L"t.kel", original.Bytes());
    MFileTagReplacer replacer;
    ASSERT_TRUE(replacer.Open(MFileName(L"t.kel")));
    EXPECT_TRUE(replacer.Apply()) << "nothing to do";
    ASSERT_TRUE(replacer.Remove(1));
    ASSERT_TRUE(replacer.Apply());
    EXPECT_EQ(5u, replacer.GetFile().GetCount());
    EXPECT_EQ("BODY", std::string(replacer.GetFile().GetTag(1).m_name));
}

TEST_F(ReplacerTest, RefusesEditsThatDoNotFit) {
    const std::string original = Sample().Bytes();
    WriteRaw(L"t.kel", original);
    TestingUtility log;
    MFileTagReplacer replacer;
    EXPECT_FALSE(replacer.Remove(1)) << "nothing open";
    ASSERT_TRUE(replacer.Open(MFileName(L"t.kel")));
    const MTag tag("NEW");
    // The head tag, raw data, tags that are not there.
    EXPECT_FALSE(replacer.Replace(0, "x", 1));
    EXPECT_FALSE(replacer.Remove(0));
    EXPECT_FALSE(replacer.Insert(0, MFileTagReplacer::Before, tag, "x", 1));
    EXPECT_FALSE(replacer.Insert(0, MFileTagReplacer::Inside, tag, "x", 1));
    EXPECT_FALSE(replacer.Insert(3, MFileTagReplacer::Inside, tag, "x", 1)) << "DATA";
    EXPECT_FALSE(replacer.Remove(10));
    EXPECT_FALSE(replacer.Replace(1, nullptr, 1));
    EXPECT_FALSE(replacer.Replace(1, MFileName(L"missing.bin")));
    // Edits inside a tag that is replaced or removed, or of the same tag twice.
    ASSERT_TRUE(replacer.Remove(2));
    EXPECT_FALSE(replacer.Replace(3, "x", 1)) << "inside the removed mesh";
    EXPECT_FALSE(replacer.Insert(2, MFileTagReplacer::Inside, tag, "x", 1));
    EXPECT_FALSE(replacer.Replace(2, "x", 1));
    EXPECT_FALSE(replacer.Remove(1)) << "holds the removed mesh";
    EXPECT_TRUE(replacer.Insert(2, MFileTagReplacer::Before, tag, "x", 1));
    EXPECT_TRUE(replacer.Insert(2, MFileTagReplacer::After, tag, "y", 1));
    EXPECT_EQ(3u, replacer.GetEditCount());
    EXPECT_EQ(original, ReadRaw(L"t.kel")) << "nothing is written before Apply";
    EXPECT_TRUE(
        Logged(log, L"In MFileTagReplacer::Insert() : The tag 3 (DATA) holds raw data, no tags"));
    EXPECT_TRUE(Logged(log,
                       L"In MFileTagReplacer::Replace() : The edit of tag 3 (DATA) goes against "
                       L"an edit pending"));
    EXPECT_TRUE(Logged(log, L"In MFileTagReplacer::Remove() : The head tag takes no edit but an "
                            L"insertion after it"));
#ifndef _WIN32
    // Windows keeps others from writing to a file opened for rewriting; elsewhere a file that
    // changed since it was read is left as it now is, and the edits stay.
    const std::string changed = original + Tag("MORE", 2, "");
    WriteRaw(L"t.kel", changed);
    EXPECT_FALSE(replacer.Apply());
    EXPECT_EQ(changed, ReadRaw(L"t.kel"));
    EXPECT_EQ(3u, replacer.GetEditCount());
    EXPECT_TRUE(
        Logged(log, L"In MFileTagReplacer::Apply() : The file 't.kel' changed since it was read"));
#endif
}

// Every call of the file layer during a rewrite fails in turn, or the user aborts before it:
// the rewrite either fails with the original in place, byte for byte, or completes.
TEST_F(ReplacerTest, ApplyNeverLosesTheFile) {
    Sample original;
    original.data0 = std::string(3u << 20, 'z'); // polled for an abort while copied
    original.note = Tag("NOTE", 2, std::string(300000, 'n'));
    Sample result = original;
    result.data1 = std::string(400000, 'r');
    result.leaf = Tag("NEW", 2, "leaf");
    auto apply = [&] {
        MFileTagReplacer replacer;
        const std::string data(400000, 'r');
        // Chosen by name: a read that fails while the tags are listed leaves tags out.
        MFileTagged& file = replacer.GetFile();
        return replacer.Open(MFileName(L"t.kel")) &&
               replacer.Replace(file.Find(MTag("DATA"), 0, 1), data.data(), data.size()) &&
               replacer.Insert(file.Find(MTag("LEAF"), 0, 0), MFileTagReplacer::Inside,
                               MTag("NEW", 2, 0), "leaf", 4) &&
               replacer.Apply();
    };
    TestingUtility log;
    EXPECT_LE(5, RunIntoEachCall(Injected::Failure, L"t.kel", original.Bytes(), result.Bytes(),
                                 L"replace", apply));
    EXPECT_TRUE(Logged(log, L"In MFileTagReplacer::Apply() : Error writing to file 't.kel"));
    EXPECT_LE(3, RunIntoEachCall(Injected::Abort, L"t.kel", original.Bytes(), result.Bytes(),
                                 L"replace", apply));
    EXPECT_TRUE(Logged(
        log,
        L"In MFileTagReplacer::Apply() : Aborted by the user, the file 't.kel' is left as it was"));
}

} // namespace
