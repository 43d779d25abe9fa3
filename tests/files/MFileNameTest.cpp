#include "MFileName.h"

#include <gtest/gtest.h>

#include "GeneratedPaths.h"
#include "PathGrammar.h"

namespace {

struct SplitCase {
    const wchar_t* path;
    bool dirOnly;
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* file;
    const wchar_t* ext;
    const wchar_t* composed;
};

void ExpectParts(const MFileName& name, const SplitCase& c) {
    EXPECT_STREQ(name.GET_DRIVE_PART(), c.drive);
    EXPECT_STREQ(name.GET_DIR_PART(), c.dir);
    EXPECT_STREQ(name.GET_FILE_PART(), c.file);
    EXPECT_STREQ(name.GET_EXT_PART(), c.ext);
}

} // namespace

TEST(MFileNameTest, SplitsAndComposes) {
    const SplitCase cases[] = {
        {L"C:\\a\\b\\f.txt", false, L"C:\\", L"a\\b\\", L"f", L".txt", L"C:\\a\\b\\f.txt"},
        // Only a backslash counts as the separator before the name.
        {L"C:/a/b/f.txt", false, L"C:/", L"a/b/", L"f", L".txt", L"C:/a/b/\\f.txt"},
        {L"C:\\a/b\\", false, L"C:\\", L"a/b\\", L"", L"", L"C:\\a/b\\"},
        {L"C:\\", false, L"C:\\", L"", L"", L"", L"C:\\"},
        {L"/", false, L"/", L"", L"", L"", L"/"},
        {L"\\\\server\\share\\dir\\f.txt", false, L"\\\\server\\", L"share\\dir\\", L"f", L".txt",
         L"\\\\server\\share\\dir\\f.txt"},
        {L"//server/share", false, L"//server/", L"", L"share", L"", L"//server/share"},
        {L"\\\\?\\C:\\x\\f.txt", false, L"\\\\?\\", L"C:\\x\\", L"f", L".txt",
         L"\\\\?\\C:\\x\\f.txt"},
        {L"a\\b\\f.txt", false, L"", L"a\\b\\", L"f", L".txt", L"a\\b\\f.txt"},
        {L"f.txt", false, L"", L"", L"f", L".txt", L"f.txt"},
        // Only a directory: composed with a leading backslash.
        {L"a\\b\\", false, L"", L"a\\b\\", L"", L"", L"\\a\\b\\"},
        // A root name without a root directory loses its drive.
        {L"C:name.txt", false, L"", L"", L"name", L".txt", L"name.txt"},
        {L"C:dir\\name.txt", false, L"", L"dir\\", L"name", L".txt", L"dir\\name.txt"},
        {L"\\\\server", false, L"", L"", L"", L"", L""},
        // A path that starts by going up is split below a root directory.
        {L"..\\x\\f.txt", false, L"\\", L"..\\x\\", L"f", L".txt", L"\\..\\x\\f.txt"},
        {L"..", false, L"\\", L"", L"..", L"", L"\\.."},
        {L"C:\\a\\.", false, L"C:\\", L"a\\", L"", L"", L"C:\\a\\"},
        {L"C:\\a\\..", false, L"C:\\", L"a\\", L"..", L"", L"C:\\a\\.."},
        {L"C:\\a\\.profile", false, L"C:\\", L"a\\", L".profile", L"", L"C:\\a\\.profile"},
        {L"C:\\a\\archive.tar.gz", false, L"C:\\", L"a\\", L"archive.tar", L".gz",
         L"C:\\a\\archive.tar.gz"},
        {L"C:\\\\\\a\\\\f", false, L"C:\\", L"a\\\\", L"f", L"", L"C:\\a\\\\f"},
        {L"C:\\a\\b", true, L"C:\\", L"a\\b", L"", L"", L"C:\\a\\b"},
        {L"C:x\\y", true, L"C:", L"x\\y", L"", L"", L"C:x\\y"},
        {L"..\\up", true, L"\\", L"..\\up", L"", L"", L"\\..\\up"},
    };
    for (const SplitCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "path " << c.path << (c.dirOnly ? " (dir)" : ""));
        MFileName name(c.path, c.dirOnly);
        ExpectParts(name, c);
        EXPECT_STREQ(name.GET(), c.composed);
        EXPECT_STREQ(static_cast<const wchar_t*>(name), c.composed);
    }

    std::wstring drive = L"x", dir = L"x", file = L"x", ext = L"x";
    EXPECT_FALSE(POSITION_PATH_PARTS(L"", drive, dir, file, ext, false));
    EXPECT_EQ(drive + dir + file + ext, L"");
    EXPECT_TRUE(POSITION_PATH_PARTS(L"C:\\f", drive, dir, file, ext, false));

    MFileName empty(static_cast<const wchar_t*>(nullptr));
    EXPECT_TRUE(empty.IS_EMPTY());
    EXPECT_STREQ(empty.GET(), L"");
}

// Splitting what GET composed gives the same parts again, except for a name that holds only a
// directory, which GET roots with a backslash, for a directory that ends with a slash, which
// GET follows with a backslash before the name, and for a text that now starts with ".." (from
// "C:..", whose drive was dropped), which is split below a root directory.
TEST(MFileNameTest, ComposedPathsSplitTheSameWay) {
    for (const std::wstring& path : GeneratedPaths()) {
        MFileName name(path.c_str());
        const MFileName again(name.GET());
        const std::wstring dir = name.GET_DIR_PART();
        const bool hasName = *name.GET_FILE_PART() != 0 || *name.GET_EXT_PART() != 0;
        if (*name.GET_DRIVE_PART() == 0 && !hasName && !dir.empty()) {
            EXPECT_EQ(std::wstring(name.GET()), L"\\" + dir) << path;
            continue;
        }
        const bool goesUp = std::wstring(name.GET()).compare(0, 2, L"..") == 0;
        const bool slashBeforeName = hasName && !dir.empty() && dir.back() == L'/';
        EXPECT_STREQ(again.GET_DRIVE_PART(), goesUp ? L"\\" : name.GET_DRIVE_PART()) << path;
        EXPECT_EQ(again.GET_DIR_PART(), slashBeforeName ? dir + L'\\' : dir) << path;
        EXPECT_STREQ(again.GET_FILE_PART(), name.GET_FILE_PART()) << path;
        EXPECT_STREQ(again.GET_EXT_PART(), name.GET_EXT_PART()) << path;
    }
}

// The roots that the host's std::filesystem cannot be asked about natively, nor on Windows with
// this runtime, which knows no network or device roots.
TEST(MFileNameTest, GrammarKnowsNetworkAndDeviceRoots) {
    using KelBase::PathGrammar::Decompose;
    struct {
        const wchar_t* path;
        const wchar_t* rootName;
        const wchar_t* rootDirectory;
        const wchar_t* relative;
    } const cases[] = {
        {L"\\\\srv\\sh\\f", L"\\\\srv", L"\\", L"sh\\f"},
        {L"//srv//sh", L"//srv", L"/", L"sh"},
        {L"\\\\srv", L"\\\\srv", L"", L""},
        {L"\\\\?\\C:\\x", L"\\\\?", L"\\", L"C:\\x"},
        {L"\\\\.\\pipe\\x", L"\\\\.", L"\\", L"pipe\\x"},
        {L"\\??\\C:\\x", L"\\??", L"\\", L"C:\\x"},
        {L"\\??\\\\x", L"", L"\\", L"??\\\\x"},
        {L"\\\\\\x", L"", L"\\", L"x"},
        {L"1:x", L"1:", L"", L"x"},
    };
    for (const auto& c : cases) {
        const auto parts = Decompose(c.path);
        EXPECT_EQ(parts.rootName, c.rootName) << c.path;
        EXPECT_EQ(parts.rootDirectory, c.rootDirectory) << c.path;
        EXPECT_EQ(parts.relativePath, c.relative) << c.path;
    }
}

TEST(MFileNameTest, ComposesFromParts) {
    EXPECT_STREQ(MFileName(L"", L"abc", L"", L"").GET(), L"\\abc");
    EXPECT_STREQ(MFileName(L"C:\\", L"abc", L"", L"").GET(), L"C:\\abc");
    EXPECT_STREQ(MFileName(L"", L"abc", L"f", L".x").GET(), L"abc\\f.x");
    EXPECT_STREQ(MFileName(L"", L"abc\\", L"f", L"").GET(), L"abc\\f");
    EXPECT_STREQ(MFileName(L"", L"abc/", L"", L".x").GET(), L"abc/\\.x");
    EXPECT_STREQ(MFileName(L"C:", L"", L"f", L".x").GET(), L"C:f.x");
    EXPECT_STREQ(MFileName(nullptr, nullptr, nullptr, nullptr).GET(), L"");

    // A folder split as a directory, or as a path whose name gives way to the new one.
    EXPECT_STREQ(MFileName(L"C:\\dir\\sub", L"name", L".ext", true).GET(),
                 L"C:\\dir\\sub\\name.ext");
    EXPECT_STREQ(MFileName(L"C:\\dir\\other.txt", L"name", L".ext", false).GET(),
                 L"C:\\dir\\name.ext");

    MFileName name(L"C:\\a\\f.txt");
    const wchar_t* before = name.GET();
    EXPECT_EQ(name.GET(), before) << "an unchanged path keeps its text";
    EXPECT_EQ(name.GET_DRIVE_DIR_PARTS(true), L"C:\\a\\");
    EXPECT_EQ(name.GET_DRIVE_DIR_PARTS(false), L"C:\\a");
    EXPECT_EQ(MFileName(L"C:\\f.txt").GET_DRIVE_DIR_PARTS(false), L"C:\\");
    EXPECT_EQ(MFileName(L"", L"x/", L"", L"").GET_DRIVE_DIR_PARTS(true), L"x/");
    EXPECT_EQ(name.GET_FILE_EXT_PARTS(), L"f.txt");

    // Set from its own texts.
    name.SET(name.GET_DIR_PART());
    EXPECT_STREQ(name.GET_DIR_PART(), L"a\\");
    EXPECT_STREQ(name.GET(), L"\\a\\");
    name.SET(name.GET());
    EXPECT_STREQ(name.GET_DRIVE_PART(), L"\\");
    EXPECT_STREQ(name.GET(), L"\\a\\");
}

TEST(MFileNameTest, PartSettersCutAndStop) {
    MFileName name(L"C:\\d\\f.txt");
    name.SET_FILE_PART(L"ab:cd", 256);
    EXPECT_STREQ(name.GET_FILE_PART(), L"ab");
    name.SET_FILE_PART(L"abcdef", 3);
    EXPECT_STREQ(name.GET_FILE_PART(), L"abc");
    for (const wchar_t* stopper : {L"\\", L"/", L":", L"<", L">", L"|"}) {
        name.SET_EXT_PART((L".t" + std::wstring(stopper) + L"x").c_str());
        EXPECT_STREQ(name.GET_EXT_PART(), L".t") << stopper;
    }
    name.SET_EXT_PART(L".t?x*");
    EXPECT_STREQ(name.GET_EXT_PART(), L".t?x*");
    name.SET_DIR_PART(L"one\\two\\", 4);
    EXPECT_STREQ(name.GET_DIR_PART(), L"one\\");
    name.SET_FILE_EXT_PARTS(L"kelmora.ini");
    EXPECT_STREQ(name.GET(), L"C:\\one\\kelmora.ini");
    name.SET_FILE_EXT_PARTS(L"archive.tar.gz", 3, 2);
    EXPECT_STREQ(name.GET_FILE_EXT_PARTS().c_str(), L"arc.g");
    name.SET_FILE_EXT_PARTS(nullptr, 256, 256);
    EXPECT_STREQ(name.GET(), L"C:\\one\\");
    name.SET_DRIVE_PART(nullptr);
    name.SET_DIR_PART(nullptr);
    EXPECT_TRUE(name.IS_EMPTY());
}

TEST(MFileNameTest, CopiesPartsButNotTheMode) {
    MFileName source(L"", L"rel\\", L"f", L".x");
    source.SET_RELATIVE_PATH_MODE(true);
    MFileName copy(source);
    EXPECT_STREQ(copy.GET(), L"rel\\f.x");
    EXPECT_FALSE(copy.IS_RELATIVE_PATH_MODE());
    MFileName assigned(L"C:\\other");
    assigned = source;
    EXPECT_TRUE(assigned == source);
    EXPECT_STREQ(assigned.GET(), L"rel\\f.x");
    assigned = assigned;
    EXPECT_STREQ(assigned.GET(), L"rel\\f.x");
    assigned.FREE();
    EXPECT_TRUE(assigned.IS_EMPTY());
    EXPECT_STREQ(assigned.GET(), L"");
}

TEST(MFileNameTest, AppendsBelowTheFolder) {
    MFileName base(L"C:\\a", true);
    base += MFileName(L"b\\f.txt");
    EXPECT_STREQ(base.GET(), L"C:\\a\\b\\f.txt");
    base.APPEND(MFileName(L"\\sub\\", true));
    EXPECT_STREQ(base.GET(), L"C:\\a\\b\\sub\\f.txt") << "no file in the appended name";
    MFileName driveless(L"", L"x", L"", L"");
    driveless.APPEND(MFileName(L"D:\\y\\g"));
    EXPECT_STREQ(driveless.GET(), L"D:\\x\\y\\g");
    MFileName self(L"C:\\a\\", true);
    self += self;
    EXPECT_STREQ(self.GET(), L"C:\\a\\a\\");
}

TEST(MFileNameTest, RelativePathModeReformsTheDirectory) {
    MFileName name(L"", L"\\\\top\\", L"f", L"");
    name.SET_RELATIVE_PATH_MODE(true);
    EXPECT_TRUE(name.IS_RELATIVE_PATH_MODE());
    EXPECT_STREQ(name.GET(), L"top\\f");
    name.SET_RELATIVE_PATH_MODE(false);
    EXPECT_FALSE(name.IS_RELATIVE_PATH_MODE());
    EXPECT_STREQ(name.GET(), L"top\\f");
    // Without its file the name is rooted once, never made a network root.
    name.SET_FILE_PART(nullptr);
    EXPECT_STREQ(name.GET(), L"\\top\\");
}

TEST(MFileNameTest, ComparesByMask) {
    const MFileName a(L"C:\\X\\Foo.txt");
    const MFileName b(L"D:\\Y\\FOO.TXT");
    EXPECT_TRUE(a.COMPARE(b, MFileName::PART_FILE));
    EXPECT_TRUE(a.COMPARE(b, 0xC));
    EXPECT_FALSE(a.COMPARE(b, MFileName::PART_DRIVE));
    EXPECT_FALSE(a.COMPARE(b, MFileName::PART_DIR));
    EXPECT_TRUE(a.COMPARE(b, 0));
    EXPECT_TRUE(a.COMPARE(b, 0xFFF4)) << "bits above 0x8 select nothing";

    // Each bit sees a difference in its own part and in no other.
    const MFileName base(L"c:\\", L"Dir\\Sub\\", L"name", L".Ext");
    const MFileName differing[] = {
        MFileName(L"d:\\", L"dir\\sub", L"NAME", L".ext"),
        MFileName(L"C:\\", L"dir\\other\\", L"NAME", L".ext"),
        MFileName(L"C:\\", L"dir\\sub/", L"NAME2", L".ext"),
        MFileName(L"C:\\", L"DIR\\SUB", L"NAME", L".ex"),
    };
    for (unsigned short i = 0; i < 4; ++i) {
        const unsigned short bit = static_cast<unsigned short>(1u << i);
        EXPECT_FALSE(base.COMPARE(differing[i], bit)) << bit;
        EXPECT_FALSE(base.COMPARE(differing[i], MFileName::PART_ALL)) << bit;
        EXPECT_TRUE(base.COMPARE(differing[i], MFileName::PART_ALL & ~bit)) << bit;
        EXPECT_TRUE(base != differing[i]);
    }
    EXPECT_TRUE(MFileName(L"C:\\A\\B\\", true) == MFileName(L"c:\\a\\b", true));
    EXPECT_FALSE(MFileName(L"C:\\A\\B\\", true) == MFileName(L"c:\\a\\bc", true));
    // Slash and backslash are different characters before the end of a directory.
    EXPECT_FALSE(MFileName(L"C:\\A\\B", true) == MFileName(L"C:\\A/B", true));
    EXPECT_FALSE(MFileName(L"C:\\A", true) == MFileName(L"C:/A", true));
}

TEST(MFileNameTest, FiltersByPattern) {
    const MFileName report(L"C:\\d\\Report.TXT");
    EXPECT_TRUE(report.FILTER_EXT(L".txt"));
    EXPECT_TRUE(report.FILTER_EXT(L".t?t"));
    EXPECT_TRUE(report.FILTER_EXT(L".*"));
    EXPECT_FALSE(report.FILTER_EXT(L".doc"));
    EXPECT_FALSE(report.FILTER_EXT(L""));
    EXPECT_FALSE(report.FILTER_EXT(L".tx"));
    EXPECT_TRUE(report.FILTER_FILE(L"rep*"));
    EXPECT_TRUE(report.FILTER_FILE(L"*o*t"));
    EXPECT_FALSE(report.FILTER_FILE(L"rep"));
    EXPECT_FALSE(report.FILTER_FILE(L"*x*"));
    EXPECT_TRUE(report.FILTER(L"*", L".TXT"));
    EXPECT_FALSE(report.FILTER(L"x*", L".txt"));
    EXPECT_FALSE(report.FILTER(L"*", L".doc"));

    // '*' in the pattern stays a wildcard where the name holds a '*'.
    const MFileName starred(L"", L"", L"*x", L".*y");
    EXPECT_TRUE(starred.FILTER_FILE(L"*"));
    EXPECT_TRUE(starred.FILTER(L"*X", L".*"));

    const MFileName bare(L"C:\\d\\Makefile");
    EXPECT_TRUE(bare.FILTER_EXT(L""));
    EXPECT_TRUE(bare.FILTER_EXT(nullptr));
    EXPECT_TRUE(bare.FILTER_EXT(L".*"));
    EXPECT_FALSE(bare.FILTER_EXT(L"*"));
    EXPECT_FALSE(bare.FILTER_EXT(L".txt"));
    EXPECT_TRUE(bare.FILTER(L"make*", L".*"));
}

TEST(MFileNameTest, MakesSafeNames) {
    MFileName name(L"C:\\d\\a:b?.t?x");
    ASSERT_STREQ(name.GET_FILE_PART(), L"a:b?");
    EXPECT_FALSE(name.IsSafe());
    name.MAKE_SAFE();
    EXPECT_STREQ(name.GET_FILE_PART(), L"a_b_");
    EXPECT_STREQ(name.GET_EXT_PART(), L".t?x") << "the extension is left alone";
    EXPECT_TRUE(name.IsSafe());

    // Every character of the set that a split leaves in a file name (separators end it).
    MFileName all(L"C:\\d\\$a:b*c?d\"e<f>g|h");
    ASSERT_STREQ(all.GET_FILE_PART(), L"$a:b*c?d\"e<f>g|h");
    all.MAKE_SAFE();
    EXPECT_STREQ(all.GET_FILE_PART(), L"_a_b_c_d_e_f_g_h");
    MFileName empty(L"C:\\d\\", true);
    EXPECT_FALSE(empty.IsSafe());
    empty.MAKE_SAFE();
    EXPECT_STREQ(empty.GET_FILE_PART(), L"");

    MFileName longName(L"", L"", std::wstring(300, L'n').c_str(), L".x");
    EXPECT_FALSE(longName.IsSafe());
    longName.MAKE_SAFE();
    EXPECT_EQ(std::wstring(longName.GET_FILE_PART()).size(), 256u);
    EXPECT_TRUE(longName.IsSafe());
    EXPECT_STREQ(longName.GET_EXT_PART(), L".x");
}

TEST(MFileNameTest, AbbreviatesInTheMiddle) {
    const wchar_t* path = L"C:\\a\\bb\\ccc\\file.txt"; // 20 characters
    EXPECT_EQ(ABREVIATE_PATH(path, 20, false), path);
    EXPECT_EQ(ABREVIATE_PATH(path, 19, false), L"C:\\...\\ccc\\file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 18, false), L"C:\\...\\file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 15, false), L"C:\\...\\file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 14, false), L"file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 6, true), L"file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 6, false), L"fil...");
    EXPECT_EQ(ABREVIATE_PATH(path, 2, false), L"fi");
    EXPECT_EQ(ABREVIATE_PATH(L"\\\\srv\\share\\a\\b\\", 13, false), L"\\\\srv\\...\\b\\");
    EXPECT_EQ(ABREVIATE_PATH(L"rel\\dir\\f", 7, false), L"...\\f");
    EXPECT_EQ(ABREVIATE_PATH(L"C:\\longname", 5, true), L"longname");
    EXPECT_EQ(ABREVIATE_PATH(nullptr, 5, true), L"");
}
