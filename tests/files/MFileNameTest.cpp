#include "MFileName.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

// "drive|dir|file|ext", the parts side by side.
std::wstring Parts(const MFileName& name) {
    return std::wstring(name.GET_DRIVE_PART()) + L'|' + name.GET_DIR_PART() + L'|' +
           name.GET_FILE_PART() + L'|' + name.GET_EXT_PART();
}

} // namespace

TEST(MFileNameTest, SplitsAndComposes) {
    // Path, whether it names only a directory, "drive|dir|file|ext", and the composed path (null:
    // the path itself).
    const std::tuple<const wchar_t*, bool, const wchar_t*, const wchar_t*> cases[] = {
        // Only a backslash counts as the separator before the name.
        {L"C:/a/b/f.txt", false, L"C:/|a/b/|f|.txt", L"C:/a/b/\\f.txt"},
        {L"C:\\a/b\\", false, L"C:\\|a/b\\||", nullptr},
        {L"C:\\\\\\a\\\\f", false, L"C:\\|a\\\\|f|", L"C:\\a\\\\f"},
        {L"a\\b\\f.txt", false, L"|a\\b\\|f|.txt", nullptr},
        // Only a directory: composed with a leading backslash.
        {L"a\\b\\", false, L"|a\\b\\||", L"\\a\\b\\"},
        // A root name without a root directory loses its drive; alone it is the file name.
        {L"C:name.txt", false, L"||name|.txt", L"name.txt"},
        {L"C:", false, L"||C:|", nullptr},
        {L"\\\\server", false, L"||\\\\server|", nullptr},
        // A lone root directory is no file name, whichever separator it is.
        {L"C:/", false, L"C:/|||", nullptr},
        {L"\\", false, L"\\|||", nullptr},
        // Network and long-path roots, and separators that make none.
        {L"\\\\server\\share\\f.txt", false, L"\\\\server\\|share\\|f|.txt", nullptr},
        {L"//server//share", false, L"//server/||share|", L"//server/share"},
        {L"\\\\?\\C:\\x\\f", false, L"\\\\?\\|x\\|f|", L"\\\\?\\x\\f"},
        {L"\\\\.\\pipe\\x", false, L"\\\\.\\|pipe\\|x|", nullptr},
        // A path that starts by going up is split below a root directory.
        {L"..\\x\\f.txt", false, L"\\|..\\x\\|f|.txt", L"\\..\\x\\f.txt"},
        {L"..", false, L"\\||..|", L"\\.."},
        // The last dot starts the extension, a leading one too; "." and ".." have none.
        {L"C:\\a\\.", false, L"C:\\|a\\||", L"C:\\a\\"},
        {L"C:\\a\\..", false, L"C:\\|a\\|..|", nullptr},
        {L"C:\\a\\.profile", false, L"C:\\|a\\||.profile", nullptr},
        {L"C:\\a\\...", false, L"C:\\|a\\|..|.", nullptr},
        {L"a.tar.gz", false, L"||a.tar|.gz", nullptr},
        // After a trailing slash the name "." is cut off at the directory's last dot, if any.
        {L"C:\\a.b/c/", false, L"C:\\|a||", L"C:\\a"},
        {L"C:\\a/b/", false, L"C:\\|a/b/||", nullptr},
        {L"C:\\a\\b", true, L"C:\\|a\\b||", nullptr},
        {L"..\\up", true, L"\\|..\\up||", L"\\..\\up"},
    };
    for (const auto& [path, dirOnly, parts, composed] : cases) {
        const MFileName name(path, dirOnly);
        EXPECT_EQ(Parts(name), parts) << path << (dirOnly ? " (dir)" : "");
        EXPECT_STREQ(name.GET(), composed ? composed : path) << path;
    }
    std::wstring drive = L"x", dir = L"x", file = L"x", ext = L"x";
    EXPECT_FALSE(POSITION_PATH_PARTS(L"", drive, dir, file, ext, false));
    EXPECT_EQ(drive + dir + file + ext, L"");
}

TEST(MFileNameTest, BuildsFromPartsAndOtherNames) {
    EXPECT_STREQ(MFileName(nullptr, nullptr, nullptr, nullptr).GET(), L"");
    // A folder split as a directory, or as a path whose name gives way to the new one.
    EXPECT_STREQ(MFileName(L"C:\\d\\sub", L"n", L".e", true).GET(), L"C:\\d\\sub\\n.e");
    EXPECT_STREQ(MFileName(L"C:\\d\\other.txt", L"n", L".e", false).GET(), L"C:\\d\\n.e");

    MFileName name(L"C:\\a\\f.txt");
    EXPECT_EQ(name.GET_DRIVE_DIR_PARTS(true), L"C:\\a\\");
    EXPECT_EQ(name.GET_DRIVE_DIR_PARTS(false), L"C:\\a");
    EXPECT_EQ(MFileName(L"C:\\f.txt").GET_DRIVE_DIR_PARTS(false), L"C:\\") << "the root stays";
    // Names stop at a separator, ':', '<', '>' or '|' (not at wildcards), and at their limit.
    for (const wchar_t* stopper : {L"\\", L"/", L":", L"<", L">", L"|"}) {
        const std::wstring text = L"a?*" + std::wstring(stopper) + L"x";
        name.SET_FILE_PART(text.c_str());
        name.SET_EXT_PART(text.c_str());
        EXPECT_EQ(name.GET_FILE_EXT_PARTS(), L"a?*a?*") << stopper;
    }
    name.SET_DIR_PART(L"one\\two\\", 4);
    name.SET_FILE_EXT_PARTS(L"archive.tar.gz", 3, 2);
    EXPECT_STREQ(name.GET(), L"C:\\one\\arc.g");
    // Set from its own texts.
    name.SET(name.GET_DIR_PART());
    EXPECT_STREQ(name.GET(), L"\\one\\");

    MFileName base(L"C:\\a", true);
    base += MFileName(L"b\\f.txt");
    base.APPEND(MFileName(L"\\sub\\", true));
    EXPECT_STREQ(base.GET(), L"C:\\a\\b\\sub\\f.txt") << "no file in the second name";
    EXPECT_STREQ(MFileName(L"", L"x", L"", L"").APPEND(MFileName(L"D:\\y\\g")).GET(),
                 L"D:\\x\\y\\g");
    MFileName self(L"C:\\a\\", true);
    EXPECT_STREQ((self += self).GET(), L"C:\\a\\a\\");

    name = MFileName(L"", L"\\\\top\\", L"f", L"");
    name.SET_RELATIVE_PATH_MODE(true);
    EXPECT_STREQ(name.GET(), L"top\\f");
    EXPECT_FALSE(MFileName(name).IS_RELATIVE_PATH_MODE()) << "the mode is the object's own";
    // Without its file the name is rooted once, never made a network root.
    name.SET_RELATIVE_PATH_MODE(false);
    name.SET_FILE_PART(nullptr);
    EXPECT_STREQ(name.GET(), L"\\top\\");
}

// Each bit sees a difference in its own part and in no other, whatever bits above 0x8 the mask
// holds; case and the separator that ends a directory never count.
TEST(MFileNameTest, ComparesByMask) {
    const MFileName base(L"c:\\", L"Dir\\Sub\\", L"name", L".Ext");
    const MFileName differing[] = {
        MFileName(L"d:\\", L"dir\\sub", L"NAME", L".ext"),
        MFileName(L"C:\\", L"dir\\other\\", L"NAME", L".ext"),
        MFileName(L"C:\\", L"dir\\sub/", L"NAME2", L".ext"),
        MFileName(L"C:\\", L"DIR\\SUB", L"NAME", L".ex"),
    };
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned short bit = static_cast<unsigned short>(1u << i);
        EXPECT_FALSE(base.COMPARE(differing[i], bit)) << bit;
        const unsigned short others = static_cast<unsigned short>(0xFFF0 | (0xF & ~bit));
        EXPECT_TRUE(base.COMPARE(differing[i], others)) << bit;
    }
    EXPECT_FALSE(MFileName(L"C:\\A\\B\\", true) == MFileName(L"c:\\a\\bc", true));
    // Slash and backslash are different characters before the end of a directory.
    EXPECT_FALSE(MFileName(L"C:\\A\\B", true) == MFileName(L"C:\\A/B", true));
}

TEST(MFileNameTest, FiltersByPattern) {
    // '*' in the pattern stays a wildcard where the name holds a '*'.
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*, bool> cases[] = {
        {L"Report.TXT", L"rep*", L".t?t", true}, {L"Report.TXT", L"*o*t", L".*", true},
        {L"Report.TXT", L"rep", L".txt", false}, {L"Report.TXT", L"*", L".tx", false},
        {L"Report.TXT", L"*", L"", false},       {L"Makefile", L"make*", nullptr, true},
        {L"Makefile", L"*", L".*", true},        {L"Makefile", L"*", L"*", false},
        {L"*x.*y", L"*X", L".*", true}};
    for (const auto& [path, file, ext, matches] : cases)
        EXPECT_EQ(MFileName(path).FILTER(file, ext), matches) << path << " " << file << " " << ext;
}

// A name that starts with its only dot has no file part: it is not safe, and the filters and
// comparisons see it as an extension.
TEST(MFileNameTest, LeadingDotNameIsAllExtension) {
    const MFileName profile(L"C:\\a\\.profile");
    EXPECT_FALSE(profile.IsSafe());
    EXPECT_TRUE(profile.FILTER_EXT(L".PROF*"));
    EXPECT_FALSE(profile.FILTER_FILE(L"?*")) << "no file name to match";
    EXPECT_TRUE(profile.COMPARE(MFileName(L"D:\\b\\.Profile"), MFileName::PART_EXT));
    EXPECT_FALSE(profile.COMPARE(MFileName(L"C:\\a\\.profile.txt"), MFileName::PART_EXT));
    MFileName name;
    name.SET_FILE_EXT_PARTS(L".bashrc");
    EXPECT_EQ(Parts(name), L"|||.bashrc");
}

TEST(MFileNameTest, AbbreviatesInTheMiddle) {
    const wchar_t* path = L"C:\\a\\bb\\ccc\\file.txt"; // 20 characters
    EXPECT_EQ(ABREVIATE_PATH(path, 19, false), L"C:\\...\\ccc\\file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 15, false), L"C:\\...\\file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 14, false), L"file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 6, true), L"file.txt");
    EXPECT_EQ(ABREVIATE_PATH(path, 6, false), L"fil...");
    EXPECT_EQ(ABREVIATE_PATH(path, 2, false), L"fi");
    EXPECT_EQ(ABREVIATE_PATH(L"\\\\srv\\share\\a\\b\\", 13, false), L"\\\\srv\\...\\b\\");
    EXPECT_EQ(ABREVIATE_PATH(nullptr, 5, true), L"");
}
