#include "MTempCleaner.h"

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FileChecksWin.h"
#include "KeltoolProcess.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

// Each test's cleaners work below its own folder, which stands in for the temporary root.
class TempCleanerTest : public TempFolderTest {
protected:
    void SetUp() override {
        TempFolderTest::SetUp();
        m_root = m_folder.wstring() + L"\\";
        m_oldTmp = _wgetenv(L"TMP");
        m_oldTemp = _wgetenv(L"TEMP");
        SetBoth(m_root, m_root);
    }
    void TearDown() override {
        SetBoth(m_oldTmp, m_oldTemp);
        TempFolderTest::TearDown();
    }
    static void SetBoth(const std::wstring& tmp, const std::wstring& temp) {
        _wputenv((L"TMP=" + tmp).c_str());
        _wputenv((L"TEMP=" + temp).c_str());
        SetEnvironmentVariableW(L"TMP", tmp.c_str());
        SetEnvironmentVariableW(L"TEMP", temp.c_str());
    }
    // The folders of the root whose names begin with `entry`.
    std::vector<fs::path> Folders(const std::wstring& entry) const {
        std::vector<fs::path> found;
        for (const auto& item : fs::directory_iterator(m_folder))
            if (item.path().filename().wstring().compare(0, entry.size(), entry) == 0)
                found.push_back(item.path());
        return found;
    }

    std::wstring m_root, m_oldTmp, m_oldTemp;
};

using MFolderLockerTest = TempFolderTest;

} // namespace

TEST_F(MFolderLockerTest, LocksBetweenProcessesAndObjects) {
    const std::wstring folder = m_folder.wstring();
    auto holder = std::make_unique<KeltoolProcess>(
        std::vector<std::wstring>{L"lock", L"--seconds=60", folder}, m_folder / L"..");
    MFolderLocker second;
    ASSERT_TRUE(Eventually([&] { return Exists(m_folder / L"__fold__.lock"); }));
    // The other process's lock is a sharing violation, reported without waiting.
    const auto start = std::chrono::steady_clock::now();
    unsigned long code = 0;
    ASSERT_TRUE(Eventually([&] { return (code = second.Lock(folder.c_str())) != 0; }));
    EXPECT_EQ(code, static_cast<unsigned long>(ERROR_SHARING_VIOLATION));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(second.IsLocked());
    // Killed, the holder lets go once the system has closed its files; then the folder can go.
    holder.reset();
    EXPECT_TRUE(Eventually([&] { return second.Lock(folder.c_str()) == 0; }));
    second.Unlock();
}

TEST_F(MFolderLockerTest, OneLockPerObject) {
    fs::create_directories(m_folder / L"a");
    fs::create_directories(m_folder / L"b");
    const std::wstring a = (m_folder / L"a").wstring(), b = (m_folder / L"b").wstring();
    MFolderLocker locker(a.c_str());
    ASSERT_TRUE(locker.IsLocked());
    EXPECT_EQ(locker.Lock((a + L"/").c_str()), 0u) << "the same folder again";
    MFolderLocker other;
    EXPECT_EQ(other.Lock(a.c_str()), static_cast<unsigned long>(ERROR_SHARING_VIOLATION));
    // Another folder releases the first.
    EXPECT_EQ(locker.Lock(b.c_str()), 0u);
    EXPECT_EQ(other.Lock(a.c_str()), 0u);
    EXPECT_EQ(other.Unlock(), 0u);
    EXPECT_TRUE(Exists(m_folder / L"a" / L"__fold__.lock")) << "the lock file stays";

    // A relative folder only while no lock is held.
    MFolderLocker relative;
    SetCurrentDirectoryW(m_folder.c_str());
    EXPECT_EQ(relative.Lock(L"a"), 0u);
    EXPECT_EQ(relative.Lock(L"b"), static_cast<unsigned long>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(relative.Lock(nullptr), static_cast<unsigned long>(ERROR_INVALID_PARAMETER));
    relative.Unlock();
    SetCurrentDirectoryW(fs::temp_directory_path().c_str());
    EXPECT_EQ(relative.Lock((m_folder / L"missing").c_str()),
              static_cast<unsigned long>(ERROR_PATH_NOT_FOUND));
}

TEST_F(TempCleanerTest, OwnFolderInEnvironmentAndBack) {
    MTempCleaner cleaner(L"my:app/x");
    EXPECT_EQ(cleaner.EnumerateRootTempFolders(), 0) << "before Init";
    cleaner.Finish(); // before Init: nothing
    cleaner.Init();
    ASSERT_TRUE(cleaner.IsInitialised());
    const std::wstring own = cleaner.GetCurPath().GetString();
    EXPECT_EQ(std::wstring(cleaner.GetOldPath()), m_root);
    EXPECT_EQ(own.compare(0, m_root.size() + 9, m_root + L"my_app_x_"), 0) << own;
    EXPECT_EQ(std::wstring(_wgetenv(L"TMP")), own);
    wchar_t systemTemp[MAX_PATH];
    GetTempPathW(MAX_PATH, systemTemp);
    EXPECT_EQ(std::wstring(systemTemp), own + L"\\") << "the system's query follows";
    EXPECT_EQ(cleaner.EnumerateRootTempFolders(), 1);
    {
        MTempCleaner::MPauser pause(&cleaner);
        EXPECT_EQ(std::wstring(_wgetenv(L"TMP")), m_root);
    }
    EXPECT_EQ(std::wstring(_wgetenv(L"TMP")), own);
    MTempCleaner::MPauser nothing(nullptr);

    // A file without the archive attribute stays, and so does its folder.
    const fs::path kept = fs::path(own) / L"kept.txt";
    std::ofstream(kept) << "kept";
    ASSERT_TRUE(SetFileAttributesW(kept.c_str(), FILE_ATTRIBUTE_NORMAL));
    // Wine keeps the attribute on every file: there the file goes too.
    const bool archived = GetFileAttributesW(kept.c_str()) & FILE_ATTRIBUTE_ARCHIVE;
    std::ofstream(fs::path(own) / L"gone.txt") << "gone";
    cleaner.Finish();
    cleaner.Finish();
    EXPECT_EQ(std::wstring(_wgetenv(L"TMP")), m_root);
    EXPECT_EQ(Exists(kept), !archived);
    EXPECT_EQ(Exists(own), !archived);
    EXPECT_FALSE(Exists(fs::path(own) / L"gone.txt"));
    fs::remove_all(own);
    cleaner.Init();
    const std::wstring again = cleaner.GetCurPath().GetString();
    cleaner.Finish();
    EXPECT_FALSE(Exists(again)) << "an archived folder goes whole";
}

TEST_F(TempCleanerTest, FileNameModeLeavesTheEnvironment) {
    const MFileName target((m_folder / L"sub").c_str(), true);
    MTempCleaner cleaner(L"named", &target);
    cleaner.Init();
    ASSERT_TRUE(cleaner.IsInitialised());
    EXPECT_EQ(std::wstring(_wgetenv(L"TMP")), m_root);
    const std::wstring own = cleaner.GetFileName().GET();
    EXPECT_EQ(own, std::wstring(cleaner.GetCurPath()));
    EXPECT_TRUE(fs::is_directory(own));
    EXPECT_EQ(own.compare(0, m_root.size() + 10, m_root + L"sub\\named_"), 0) << own;
    cleaner.Finish();
    EXPECT_FALSE(Exists(own));
    EXPECT_EQ(std::wstring(cleaner.GetFileName().GET()), m_root + L"sub\\");
}

// Two processes with one entry name: each keeps its own folder; a killed one's folder goes with
// the next Init, and a link planted in it is removed without touching its target.
TEST_F(TempCleanerTest, ProcessesKeepTheirFoldersUntilTheyDie) {
    auto holder = std::make_unique<KeltoolProcess>(std::vector<std::wstring>{L"hold", L"shared"},
                                                   m_folder / L"..", L"temp_cleaner_child.exe");
    ASSERT_TRUE(Eventually([&] {
        const auto folders = Folders(L"shared");
        return folders.size() == 1 && Exists(folders[0] / L"marker.txt");
    }));
    const fs::path theirs = Folders(L"shared")[0];
    {
        MTempCleaner mine(L"shared");
        mine.Init();
        ASSERT_TRUE(mine.IsInitialised());
        EXPECT_NE(fs::path(mine.GetCurPath().GetString()), theirs);
        EXPECT_EQ(mine.EnumerateRootTempFolders(), 2);
    }
    EXPECT_TRUE(Exists(theirs / L"marker.txt")) << "a live process's folder stays";

    // The outside folder with files, and a link to it inside the dead process's folder.
    fs::create_directories(m_folder / L"outside");
    std::ofstream(m_folder / L"outside" / L"keep.txt") << "keep";
    const bool linked =
        CreateSymbolicLinkW((theirs / L"link").c_str(), (m_folder / L"outside").c_str(),
                            SYMBOLIC_LINK_FLAG_DIRECTORY) != FALSE;
    holder.reset(); // killed
    ASSERT_TRUE(Eventually([&] { return MFolderLocker().Lock(theirs.c_str()) == 0; }));
    MTempCleaner next(L"shared");
    next.Init();
    EXPECT_FALSE(Exists(theirs / L"marker.txt")) << "a dead process's folder goes";
    EXPECT_TRUE(Exists(m_folder / L"outside" / L"keep.txt"));
    if (!linked)
        GTEST_SKIP() << "no directory link could be made here";
}

// Several processes make and remove folders of one entry name at once, round after round;
// none may lose its own folder or file while it lives.
TEST_F(TempCleanerTest, ConcurrentCleanersLoseNothing) {
    std::vector<std::unique_ptr<KeltoolProcess>> children;
    for (int i = 0; i < 4; ++i)
        children.push_back(
            std::make_unique<KeltoolProcess>(std::vector<std::wstring>{L"stress", L"busy", L"200"},
                                             m_folder / L"..", L"temp_cleaner_child.exe"));
    for (auto& child : children) {
        const KeltoolResult result = child->Finish(600000);
        EXPECT_EQ(result.exitCode, 0u);
        EXPECT_EQ(result.out, "lost 0 of 200\r\n");
    }
    EXPECT_TRUE(Folders(L"busy").empty()) << "every round removed its folder";
}

TEST_F(TempCleanerTest, KeltoolListsAndCleans) {
    fs::create_directories(m_folder / L"tool_01_02_03_1" / L"deep");
    std::ofstream(m_folder / L"tool_01_02_03_1" / L"deep" / L"f.txt") << "x";
    fs::create_directories(m_folder / L"other");
    const std::string left = (m_folder / L"tool_01_02_03_1").string();
    const KeltoolResult listed = RunKeltool({L"temp", L"list", L"tool"}, m_folder / L"..");
    EXPECT_EQ(listed.exitCode, 0u) << listed.err;
    EXPECT_EQ(listed.out, left + "  (left over)\r\n");
    const KeltoolResult cleaned = RunKeltool({L"temp", L"clean", L"tool"}, m_folder / L"..");
    EXPECT_EQ(cleaned.exitCode, 0u) << cleaned.err;
    EXPECT_EQ(cleaned.out, "removed: " + left + "\r\n1 removed, 0 left\r\n");
    EXPECT_FALSE(Exists(left));
    EXPECT_TRUE(Exists(m_folder / L"other")) << "another entry's folder";
    EXPECT_EQ(RunKeltool({L"temp", L"wipe", L"tool"}, m_folder / L"..").exitCode, 2u);
}
