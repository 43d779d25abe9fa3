#include "MDirectory.h"

#include <windows.h>
#include <shlobj.h>

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "FileChecksWin.h"
#include "KeltoolProcess.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

// "kelmora.ini" beside the test executable while the object lives.
class SettingsFile {
public:
    explicit SettingsFile(const std::string& bytes) {
        MFileName executable;
        MDirectory::GET_EXECUTABLE_DIRECTORY(executable);
        m_path = fs::path(executable.GET()) / L"kelmora.ini";
        std::ofstream(m_path, std::ios::binary) << bytes;
    }
    ~SettingsFile() { fs::remove(m_path); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;

private:
    fs::path m_path;
};

using MDirectoryFiles = TempFolderTest;

} // namespace

TEST(MDirectoryTest, WorkingAndProjectDirectories) {
    MFileName executable;
    MDirectory::GET_EXECUTABLE_DIRECTORY(executable);
    wchar_t module[MAX_PATH];
    GetModuleFileNameW(nullptr, module, MAX_PATH);
    const std::wstring folder = fs::path(module).parent_path().wstring() + L"\\";
    EXPECT_EQ(executable.GET(), folder);
    EXPECT_EQ(MDirectory::GetApplication(), folder);

    MFileName fallback(L"D:\\fallback\\", true);
    fallback.SET_RELATIVE_PATH_MODE(true);
    MDirectory::SetDefaultWorkingDirectory(fallback);
    MFileName working;
    {
        // The section and key in any case, after another section with that key.
        SettingsFile settings("\xEF\xBB\xBF[Other]\nWorkingDirectory=X:\\no\n[orvano]\n"
                              "workingdirectory = E:\\b\xC3\xBCro\n");
        MDirectory::GET_WORKING_DIRECTORY(working);
        EXPECT_STREQ(working.GET(), L"E:\\b\u00fcro");
        EXPECT_STREQ(working.GET_FILE_PART(), L"") << "split as a directory";
    }
    {
        SettingsFile settings("[Orvano]\nOther=1\n");
        MDirectory::GET_WORKING_DIRECTORY(working);
        EXPECT_STREQ(working.GET(), L"D:\\fallback\\");
        EXPECT_TRUE(working.IS_RELATIVE_PATH_MODE()) << "copied with its mode";
    }
    // Without a project directory the project is the working directory.
    MFileName project;
    MDirectory::GET_PROJECT_DIRECTORY(project);
    EXPECT_STREQ(project.GET(), L"D:\\fallback\\");
    MDirectory::SetProjectDirectory(MFileName(L"P:\\projects\\one", true));
    MDirectory::GET_PROJECT_DIRECTORY(project);
    EXPECT_STREQ(project.GET(), L"P:\\projects\\one");
    EXPECT_FALSE(project.IS_RELATIVE_PATH_MODE());
    MDirectory::SetProjectDirectory(MFileName());
    MDirectory::SetDefaultWorkingDirectory(MFileName());
}

TEST_F(MDirectoryFiles, KeltoolPrintsTheFolders) {
    const SettingsFile settings("[Orvano]\nWorkingDirectory=C:\\kel\\work\n");
    const KeltoolResult listed = RunKeltool({L"dirs"}, m_folder);
    EXPECT_EQ(listed.exitCode, 0u) << listed.err;
    const std::string binary = TestBinaryFolder().string();
    for (const std::string& line :
         {"executable: " + binary + "\\", std::string("working: C:\\kel\\work"),
          std::string("project: C:\\kel\\work")})
        EXPECT_NE(listed.out.find(line + "\r\n"), std::string::npos) << line << "\n" << listed.out;
    EXPECT_EQ(RunKeltool({L"dirs", L"extra"}, m_folder).exitCode, 2u);
}

TEST(MDirectoryTest, SystemFolders) {
    const std::wstring drive = MDirectory::GetSystemDrive();
    ASSERT_EQ(drive.size(), 2u);
    EXPECT_EQ(drive[1], L':');

    const std::wstring made = MDirectory::GetTemporaryFileName(L"kel");
    EXPECT_EQ(made.substr(0, made.rfind(L'\\') + 1), MDirectory::GetTemporary());
    EXPECT_EQ(fs::path(made).filename().wstring().substr(0, 3), L"kel");
    EXPECT_TRUE(fs::is_regular_file(made)) << "the system makes the file";
    fs::remove(made);

    // A shell folder as the shell gives it; none for an unknown number.
    wchar_t expected[MAX_PATH] = {};
    ASSERT_TRUE(MDirectory::GET_SPECIAL_FOLDER_PATH(expected, nullptr, CSIDL_APPDATA));
    EXPECT_EQ(MDirectory::GetApplicationData(false), expected);
    EXPECT_FALSE(MDirectory::GET_SPECIAL_FOLDER_PATH(nullptr, nullptr, CSIDL_APPDATA));
    EXPECT_EQ(MDirectory::GetStandard(0x7F, false), L"");
}

TEST_F(MDirectoryFiles, ChainsAreCreatedLevelByLevel) {
    const std::wstring top = Path(L"a");
    EXPECT_TRUE(mkdirchain((top + L"/b\\c/").c_str()));
    EXPECT_TRUE(IsFolder(Path(L"a\\b\\c")));
    EXPECT_TRUE(mkdirchain((top + L"\\b\\c").c_str())) << "nothing left to create";

    // A level that cannot be made (no folder name holds '|') stops the chain after the levels
    // above it and before any below it.
    EXPECT_FALSE(mkdirchain((top + L"\\x\\bad|name\\y").c_str()));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_NAME));
    EXPECT_TRUE(IsFolder(Path(L"a\\x")));
    EXPECT_EQ(std::distance(fs::directory_iterator(Path(L"a\\x")), fs::directory_iterator()), 0);

    // A drive is never created: a drive that does not exist gives nothing to do.
    for (const wchar_t* root : {L"Q:\\", L"Q:", L"\\\\server\\share\\"}) {
        EXPECT_TRUE(mkdirchain(root)) << root;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER)) << root;
    }
    for (const wchar_t* nothing : {L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_FALSE(mkdirchain(nothing));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    }
    // ".." is walked through, never created.
    EXPECT_TRUE(mkdirchain((top + L"\\b\\..\\up").c_str()));
    EXPECT_TRUE(IsFolder(Path(L"a\\up")));

    // Longer than the 256 characters a stack buffer would take.
    std::wstring deep = Path(L"long");
    while (deep.size() < 300)
        deep += L"\\level_of_twenty_ch";
    EXPECT_TRUE(mkdirchain(deep.c_str()));
    EXPECT_TRUE(IsFolder(deep));
    // Too deep for the runtime's removal that ends the test.
    EXPECT_TRUE(MFileName(Path(L"long").c_str(), true).REMOVE());
}

TEST_F(MDirectoryFiles, AccessAndEmptiness) {
    EXPECT_TRUE(MDirectory::DirectoryHasAccess(Path(L"missing").c_str(), GENERIC_READ));
    EXPECT_TRUE(MDirectory::DirectoryHasAccess(m_folder.c_str(), GENERIC_READ));
    EXPECT_TRUE(MDirectory::IsDirectoryEmpty(Path(L"missing").c_str()));
    EXPECT_TRUE(MDirectory::IsDirectoryEmpty(m_folder.c_str()));
    fs::create_directories(Path(L"sub"));
    EXPECT_FALSE(MDirectory::IsDirectoryEmpty(m_folder.c_str())) << "a folder in it";
    EXPECT_TRUE(MDirectory::IsDirectoryEmpty(Path(L"sub").c_str()));
    WriteRaw(L"sub\\f", "");
    EXPECT_FALSE(MDirectory::IsDirectoryEmpty(Path(L"sub").c_str())) << "a file in it";
}

TEST_F(MDirectoryFiles, CopiesFoldersWithEverythingInThem) {
    const std::pair<const wchar_t*, std::string> files[] = {
        {L"from\\top.bin", std::string("\0\1\2\xFF", 4)},
        {L"from\\empty.txt", ""},
        {L"from\\sub\\inner.txt", "inner"},
        {L"from\\sub\\deeper\\large.bin", std::string(300000, 'x') + "end"},
    };
    fs::create_directories(Path(L"from\\sub\\deeper"));
    fs::create_directories(Path(L"from\\hollow"));
    for (const auto& [name, bytes] : files)
        WriteRaw(name, bytes);

    ASSERT_TRUE(MDirectory::CopyDirectoryContents(Path(L"from").c_str(),
                                                  Path(L"to\\new\\levels").c_str(), false));
    for (const auto& [name, bytes] : files) {
        const std::wstring copy = L"to\\new\\levels" + std::wstring(name).substr(4);
        EXPECT_EQ(ReadRaw(copy), bytes) << copy;
    }
    EXPECT_TRUE(IsFolder(Path(L"to\\new\\levels\\hollow"))) << "empty folders too";
}
