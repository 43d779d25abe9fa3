// The sub-folders of names, created and deleted on the real file system, with the map file.
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "MDirectoryWithMap.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

class DirectoryFoldersTest : public TempFolderTest {
protected:
    // The sub-folder of `name` as CheckCreateFolder gives it, relative to the test folder.
    std::wstring Create(const wchar_t* name, unsigned long expected = 0) {
        CString folder = m_folder.c_str();
        EXPECT_EQ(MDirectoryWithMap().CheckCreateFolder(folder, name, true), expected) << name;
        return fs::path(folder.GetString()).parent_path().filename().wstring();
    }
};

// Answers as told and records what it was asked.
class ScriptedAsker : public IDirectoryRemoveAsker {
public:
    bool AskRemove(const wchar_t* name, const wchar_t*) override {
        asked.push_back(name);
        return remove;
    }
    bool AskRetry(const wchar_t*, unsigned long error) override {
        errors.push_back(error);
        if (heldOpen != INVALID_HANDLE_VALUE)
            CloseHandle(std::exchange(heldOpen, INVALID_HANDLE_VALUE));
        return true;
    }
    bool remove = true;
    HANDLE heldOpen = INVALID_HANDLE_VALUE;
    std::vector<std::wstring> asked;
    std::vector<unsigned long> errors;
};

TEST_F(DirectoryFoldersTest, NamesThatCannotStandOnDiskAreMapped) {
    const std::wstring longName(100, L'x');
    const std::wstring longSibling = std::wstring(8, L'x') + L"y";
    EXPECT_EQ(Create(L"Plain name"), L"Plain name");
    EXPECT_FALSE(fs::exists(m_folder / L".map"));
    EXPECT_EQ(Create(L"a:b?c"), L"a_b_c~1");
    EXPECT_EQ(Create(L"con.txt"), L"con_txt~1");
    EXPECT_EQ(Create(L"trailing."), L"trailing~1");
    EXPECT_EQ(Create(longName.c_str()), L"xxxxxxxx~1");
    EXPECT_EQ(Create(longSibling.c_str()), longSibling) << "fits as it is";
    EXPECT_EQ(Create(L"xxxxxxxx~1"), L"xxxxxxxx~2") << "a name that is another's mapped name";
    // Asked again, or by another object that reads the map file, each name finds its folder.
    EXPECT_EQ(Create(L"a:b?c"), L"a_b_c~1");
    EXPECT_EQ(Create(longName.c_str()), L"xxxxxxxx~1");
    MDirectoryWithMap directory;
    ASSERT_EQ(directory.Read((m_folder / L"").c_str(), 0), 0u);
    CString name;
    EXPECT_TRUE(directory.MappedName2Name(L"XXXXXXXX~2", &name));
    EXPECT_EQ(std::wstring(name.GetString()), L"xxxxxxxx~1");
    EXPECT_EQ(directory.GetCount(), 5) << "the mapped names";

    Create(L"", ERROR_INVALID_NAME);
    WriteRaw(L"file", "not a folder");
    Create(L"file", ERROR_ALREADY_EXISTS);
}

TEST_F(DirectoryFoldersTest, DeletingAsksAndRetriesAndKeepsTheMapInStep) {
    const std::wstring diskName = Create(L"held:open");
    const fs::path held = m_folder / diskName / L"held.txt";
    WriteRaw(fs::path(diskName) / L"held.txt", "data");
    Create(L"other?");

    ScriptedAsker asker;
    asker.remove = false;
    CString folder = m_folder.c_str();
    EXPECT_EQ(MDirectoryWithMap().DeleteFolder(folder, L"held:open", true, &asker),
              static_cast<unsigned long>(ERROR_CANCELLED));
    EXPECT_TRUE(fs::exists(held));
    EXPECT_EQ(asker.asked, std::vector<std::wstring>{L"held:open"});

    // A file held open without delete sharing stops the deletion until the asker closes it.
    asker.remove = true;
    asker.heldOpen = CreateFileW(held.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(asker.heldOpen, INVALID_HANDLE_VALUE);
    folder = m_folder.c_str();
    EXPECT_EQ(MDirectoryWithMap().DeleteFolder(folder, L"held:open", true, &asker), 0u);
    EXPECT_EQ(asker.errors, std::vector<unsigned long>{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(fs::path(folder.GetString()).parent_path().filename(), diskName);
    EXPECT_FALSE(fs::exists(m_folder / diskName));

    MDirectoryWithMap directory;
    ASSERT_EQ(directory.Read((m_folder / L"").c_str(), 0), 0u);
    EXPECT_FALSE(directory.Name2MappedName(L"held:open", nullptr));
    EXPECT_TRUE(directory.Name2MappedName(L"other?", nullptr));
    folder = m_folder.c_str();
    EXPECT_EQ(directory.DeleteFolder(folder, L"held:open", false, nullptr),
              static_cast<unsigned long>(ERROR_PATH_NOT_FOUND));
}

} // namespace
