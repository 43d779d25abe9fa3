#include "MFileName.h"

#include <windows.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "FileChecksWin.h"
#include "GeneratedPaths.h"
#include "PathGrammar.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

// Starts a program in a folder, then waits until done() holds: under Wine a host program runs
// on its own, without a handle to wait for. False at once when there is no such program.
template <class Condition>
bool RunUntil(std::wstring commandLine, const std::wstring& folder, Condition done) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                        nullptr, folder.c_str(), &startup, &process))
        return false;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return Eventually(done);
}

using MFileNameFiles = TempFolderTest;

} // namespace

// The library splits paths by the classic decomposition; the runtime's path type follows the
// later standard. Where both know the root (the runtime knows no network or device roots: a
// leading pair of separators is a root directory to it), they differ by these rules only:
// 1. a path that ends with a separator has the file name "." (the runtime's is empty);
// 2. a lone root directory is its own file name, as written, and so is a lone root name;
// 3. a name that starts with its only dot is all extension (the runtime's is all stem).
TEST(MFileNameGrammar, AgreesWithTheRuntimePathTypeButForTheClassicRules) {
    using namespace KelBase::PathGrammar;
    std::size_t compared = 0, byRule[4] = {};
    for (const std::wstring& path : GeneratedPaths()) {
        // Skipped: network and device roots (\\x, \\ alone, \\?, \\. and \??).
        if (path.size() >= 2 && IsSeparator(path[0]) &&
            (path[1] == L'?' ||
             (IsSeparator(path[1]) && (path.size() == 2 || !IsSeparator(path[2])))))
            continue;
        ++compared;
        const fs::path runtime(path);
        const Parts parts = Decompose(path);
        EXPECT_EQ(parts.rootName, runtime.root_name().native()) << path;
        // The runtime gives a root directory in its preferred form, the grammar as written.
        EXPECT_EQ(parts.rootDirectory.size(), runtime.root_directory().native().size()) << path;
        EXPECT_EQ(parts.relativePath, runtime.relative_path().native()) << path;

        std::wstring name = runtime.filename().native();
        std::wstring stem = runtime.stem().native(), extension = runtime.extension().native();
        int rule = 0;
        if (name.empty() && !path.empty()) {
            rule = runtime.has_relative_path() ? 1 : 2;
            name = rule == 1                      ? L"."
                   : runtime.has_root_directory() ? path.substr(path.size() - 1)
                                                  : runtime.root_name().native();
            stem = name;
        } else if (name.size() > 1 && name[0] == L'.' && name.find(L'.', 1) == name.npos) {
            rule = 3;
            extension = name;
            stem.clear();
        }
        ++byRule[rule];
        EXPECT_EQ(parts.fileName, name) << path << " rule " << rule;
        EXPECT_EQ(Stem(parts.fileName), stem) << path << " rule " << rule;
        EXPECT_EQ(Extension(parts.fileName), extension) << path << " rule " << rule;
    }
    EXPECT_GT(compared, 25000u);
    for (int rule = 0; rule < 4; ++rule)
        EXPECT_GT(byRule[rule], 0u) << "no path met rule " << rule;
}

TEST_F(MFileNameFiles, QueriesAndChangesFiles) {
    WriteRaw(L"five.bin", "12345");
    const MFileName file(Path(L"five.bin").c_str());
    EXPECT_EQ(file.FILE_SIZE(), 5);
    EXPECT_TRUE(file.IS_WRITABLE());
    EXPECT_TRUE(file.IS_UPDATABLE());
    ASSERT_TRUE(SetFileAttributesW(file.GET(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(file.IS_WRITABLE());
    SetFileAttributesW(file.GET(), FILE_ATTRIBUTE_NORMAL);
    // Held open without sharing: writable by its attributes, yet not to be opened for update.
    const HANDLE held =
        CreateFileW(file.GET(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(file.IS_WRITABLE());
    EXPECT_FALSE(file.IS_UPDATABLE());
    CloseHandle(held);

    const MFileName copy(Path(L"copy.bin").c_str());
    EXPECT_TRUE(file.COPY_FILE(copy));
    EXPECT_EQ(copy.FILE_SIZE(), 5);
    const MFileName missing(Path(L"missing.bin").c_str());
    EXPECT_FALSE(missing.COPY_FILE(copy));
    EXPECT_EQ(missing.FILE_SIZE(), -1);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));

    const MFileName dir(Path(L"made").c_str(), true);
    EXPECT_TRUE(dir.CREATE_DIRECTORY());
    EXPECT_TRUE(dir.CREATE_DIRECTORY()) << "an existing directory";
    EXPECT_FALSE(MFileName(Path(L"no\\such\\level").c_str(), true).CREATE_DIRECTORY());
    EXPECT_FALSE(file.CREATE_DIRECTORY()) << "a file of that name";

    fs::create_directories(Path(L"tree\\a\\b"));
    WriteRaw(L"tree\\top.txt", "1");
    WriteRaw(L"tree\\a\\b\\deep.txt", "2");
    EXPECT_TRUE(MFileName(Path(L"tree").c_str(), true).REMOVE());
    EXPECT_FALSE(Exists(Path(L"tree")));

    WriteRaw(L"old.txt", "x");
    const MFileName old(Path(L"old.txt").c_str());
    const MFileName renamed(Path(L"new.txt").c_str());
    ASSERT_TRUE(old.RENAME_SHELL(renamed, false));
    EXPECT_TRUE(renamed.DOES_EXIST());
    EXPECT_TRUE(renamed.REMOVE_SHELL(false));
    EXPECT_FALSE(renamed.DOES_EXIST());
    EXPECT_FALSE(MFileName().REMOVE_SHELL(false));
}

TEST_F(MFileNameFiles, RemoveDoesNotFollowDirectoryLinks) {
    fs::create_directories(Path(L"outside"));
    WriteRaw(L"outside\\keep.txt", "keep");
    fs::create_directories(Path(L"tree"));
    // A junction made by the system's own command; under Wine, whose directory links are the
    // host's symbolic links, a link made on the host (a program of the host's root, Z:).
    const std::wstring link = Path(L"tree\\link");
    const auto made = [&link] {
        return Exists(link) && (GetFileAttributesW(link.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT);
    };
    if (!RunUntil(L"Z:\\bin\\ln -s ../outside tree/link", m_folder, made) &&
        !RunUntil(L"cmd.exe /c mklink /J tree\\link outside", m_folder, made))
        GTEST_SKIP() << "no directory links can be made here";

    // Removing the link itself, then a tree holding it: the target stays either way. Under Wine
    // the system cannot remove a host link, so the removal may fail, but never by going in.
    const bool linkRemoved = MFileName(link.c_str()).REMOVE();
    EXPECT_EQ(linkRemoved, !Exists(link));
    EXPECT_TRUE(Exists(Path(L"outside\\keep.txt")));
    const bool treeRemoved = MFileName(Path(L"tree").c_str(), true).REMOVE();
    EXPECT_EQ(treeRemoved, !Exists(Path(L"tree")));
    EXPECT_TRUE(Exists(Path(L"outside\\keep.txt")));
    // Wine cannot remove its host's links: the host does, so that no run leaves one behind.
    RunUntil(L"Z:\\bin\\rm -f tree/link", m_folder, [&] { return !Exists(link); });
}

TEST_F(MFileNameFiles, TemporaryAndSystemPaths) {
    // The shared counter: different names without any file being created.
    const wchar_t* folder = m_folder.c_str();
    MFileName first, second;
    const unsigned short afterFirst = first.SET_TEMP_NAME(folder, nullptr, nullptr, 0xFFFF);
    const unsigned short afterSecond = second.SET_TEMP_NAME(folder, nullptr, nullptr, 0xFFFF);
    EXPECT_STRNE(first.GET(), second.GET());
    EXPECT_FALSE(first.DOES_EXIST());
    EXPECT_FALSE(second.DOES_EXIST());
    EXPECT_EQ(std::wstring(second.GET()), Path(L"~kel" + std::to_wstring(afterFirst) + L".tmp"));

    // A caller's start skips existing names and leaves the shared counter alone.
    WriteRaw(L"pre0007.dat", "");
    MFileName named;
    EXPECT_EQ(named.SET_TEMP_NAME(folder, L"pre", L".dat", 7, 4), 9);
    EXPECT_EQ(std::wstring(named.GET()), Path(L"pre0008.dat"));
    EXPECT_EQ(MFileName().SET_TEMP_NAME(folder, L""), static_cast<unsigned short>(afterSecond + 1));
    // The prefix gives way to a long folder: 256 - (241 + 4) - 1 digit leaves 10 characters.
    const std::wstring longFolder = L"C:\\" + std::wstring(240, L'd') + L"\\";
    named.SET_TEMP_NAME(longFolder.c_str(), L"abcdefghijklmnop", nullptr, 5, 0);
    EXPECT_STREQ(named.GET_FILE_PART(), L"abcdefghij5");

    WriteRaw(L"data_1.txt", "");
    MFileName indexed(Path(L"data.txt").c_str());
    ASSERT_TRUE(indexed.ADD_UNIQUE_INDEX());
    EXPECT_EQ(indexed.GET_FILE_EXT_PARTS(), L"data_2.txt");
    WriteRaw(L"data_255.txt", "");
    MFileName last(Path(L"data.txt").c_str());
    EXPECT_FALSE(last.ADD_UNIQUE_INDEX(255));
    EXPECT_STREQ(last.GET_FILE_PART(), L"data");

    // The system's own folders, each split as a directory; temporary names go to the second.
    MFileName working, temporary;
    ASSERT_TRUE(working.FILL_WITH_WORKING_PATH());
    EXPECT_EQ(working.GET(), fs::current_path().wstring());
    EXPECT_STREQ(working.GET_FILE_PART(), L"");
    ASSERT_TRUE(temporary.FILL_WITH_TEMPORARY_PATH());
    EXPECT_EQ(temporary.GET(), fs::temp_directory_path().wstring());
    named.SET_TEMP_NAME();
    EXPECT_TRUE(named.COMPARE(temporary, MFileName::PART_DRIVE | MFileName::PART_DIR));
    EXPECT_STREQ(named.GET_EXT_PART(), L".tmp");
}
