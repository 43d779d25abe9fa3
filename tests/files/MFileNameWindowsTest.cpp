#include "MFileName.h"

#include <windows.h>

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "GeneratedPaths.h"
#include "PathGrammar.h"

namespace {

namespace fs = std::filesystem;

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsLink(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT);
}

void WriteContent(const std::wstring& path, const std::string& content) {
    std::ofstream(fs::path(path), std::ios::binary) << content;
}

// Runs a command line. Under Wine a host program runs on its own, without a handle to wait
// for, so callers wait for its effect with Await.
void RunCommand(std::wstring commandLine) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                       nullptr, &startup, &process)) {
        WaitForSingleObject(process.hProcess, 10000);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

template <class Condition> bool Await(Condition done) {
    for (int i = 0; i < 50 && !done(); ++i)
        Sleep(100);
    return done();
}

// The host path of a Windows path under Wine; empty elsewhere.
std::string HostPath(const std::wstring& path) {
    using Convert = char*(CDECL*)(LPCWSTR);
    const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* host = convert ? convert(path.c_str()) : nullptr;
    const std::string result = host ? host : "";
    HeapFree(GetProcessHeap(), 0, host);
    return result;
}

std::wstring Widen(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

class MFileNameFiles : public ::testing::Test {
protected:
    void SetUp() override {
        wchar_t temp[MAX_PATH];
        ASSERT_NE(GetTempPathW(MAX_PATH, temp), 0u);
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_folder = std::wstring(temp) + L"kelfiles_" + Widen(info->name());
        fs::remove_all(m_folder);
        ASSERT_TRUE(fs::create_directories(m_folder));
    }
    void TearDown() override {
        // Links that the system cannot remove (Wine's host links, dangling ones too) go
        // through the host, so that a failed run leaves nothing that fails the next one.
        for (const std::wstring& link : m_hostLinks)
            RunCommand(L"Z:\\bin\\rm -f " + Widen(HostPath(link)));
        Await([this] {
            std::error_code ignored;
            fs::remove_all(m_folder, ignored);
            return !Exists(m_folder);
        });
    }

    std::wstring Path(const std::wstring& name) const { return m_folder + L"\\" + name; }

    // A junction made by the system's own command; under Wine, whose directory links are the
    // host's symbolic links, a link made on the host.
    bool MakeDirectoryLink(const std::wstring& link, const std::wstring& target) {
        const std::string hostFolder = HostPath(m_folder);
        if (hostFolder.empty()) {
            RunCommand(L"cmd.exe /c mklink /J \"" + link + L"\" \"" + target + L"\"");
        } else {
            m_hostLinks.push_back(link);
            RunCommand(L"Z:\\bin\\ln -s " + Widen(HostPath(target)) + L" " + Widen(hostFolder) +
                       L"/" + fs::path(link).lexically_relative(m_folder).generic_wstring());
        }
        return Await([&link] { return IsLink(link); });
    }

    std::wstring m_folder;
    std::vector<std::wstring> m_hostLinks;
};

} // namespace

// The runtime's path type knows no network or device roots (a leading pair of separators is a
// root directory to it); those roots are checked on their own in the portable tests.
TEST(MFileNameGrammar, AgreesWithTheRuntimePathType) {
    using namespace KelBase::PathGrammar;
    const auto withBackslashes = [](std::wstring text) {
        for (wchar_t& c : text)
            c = c == L'/' ? L'\\' : c;
        return text;
    };
    std::size_t compared = 0;
    for (const std::wstring& path : GeneratedPaths()) {
        const bool networkRoot = path.size() >= 3 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
                                 !IsSeparator(path[2]);
        const bool objectRoot = path.compare(0, 4, L"\\??\\") == 0;
        if (networkRoot || objectRoot)
            continue;
        ++compared;
        const fs::path runtime(path);
        const Parts parts = Decompose(path);
        EXPECT_EQ(parts.rootName, runtime.root_name().native()) << path;
        // The runtime reports a root directory standing alone in its preferred form.
        EXPECT_EQ(withBackslashes(std::wstring(parts.rootDirectory)),
                  withBackslashes(runtime.root_directory().native()))
            << path;
        EXPECT_EQ(parts.relativePath, runtime.relative_path().native()) << path;
        EXPECT_EQ(parts.fileName, runtime.filename().native()) << path;
        EXPECT_EQ(Stem(parts.fileName), runtime.stem().native()) << path;
        EXPECT_EQ(Extension(parts.fileName), runtime.extension().native()) << path;
    }
    EXPECT_GT(compared, 25000u);
}

TEST_F(MFileNameFiles, QueriesTheFileSystem) {
    WriteContent(Path(L"five.bin"), "12345");
    const MFileName file(Path(L"five.bin").c_str());
    EXPECT_TRUE(file.DOES_EXIST());
    EXPECT_EQ(file.FILE_SIZE(), 5);
    EXPECT_TRUE(file.IS_WRITABLE());
    EXPECT_TRUE(file.IS_UPDATABLE());

    WriteContent(Path(L"locked.bin"), "x");
    ASSERT_TRUE(SetFileAttributesW(Path(L"locked.bin").c_str(), FILE_ATTRIBUTE_READONLY));
    const MFileName locked(Path(L"locked.bin").c_str());
    EXPECT_FALSE(locked.IS_WRITABLE());
    EXPECT_TRUE(locked.DOES_EXIST());
    SetFileAttributesW(Path(L"locked.bin").c_str(), FILE_ATTRIBUTE_NORMAL);
    // Held open without sharing: writable by its attributes, yet not to be opened for update.
    const HANDLE held = CreateFileW(Path(L"locked.bin").c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(locked.IS_WRITABLE());
    EXPECT_FALSE(locked.IS_UPDATABLE());
    CloseHandle(held);
    EXPECT_TRUE(locked.IS_UPDATABLE());

    const MFileName missing(Path(L"missing.bin").c_str());
    EXPECT_FALSE(missing.DOES_EXIST());
    EXPECT_FALSE(missing.IS_WRITABLE());
    EXPECT_FALSE(missing.IS_UPDATABLE());
    EXPECT_EQ(missing.FILE_SIZE(), -1);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));

    const MFileName folder(m_folder.c_str(), true);
    EXPECT_TRUE(folder.DOES_EXIST());
    EXPECT_EQ(folder.FILE_SIZE(), -1);
    EXPECT_FALSE(MFileName().DOES_EXIST());
}

TEST_F(MFileNameFiles, CopiesAndCreates) {
    WriteContent(Path(L"source.txt"), "content");
    const MFileName source(Path(L"source.txt").c_str());
    const MFileName target(Path(L"target.txt").c_str());
    ASSERT_TRUE(source.COPY_FILE(target));
    EXPECT_EQ(target.FILE_SIZE(), 7);
    EXPECT_FALSE(MFileName(Path(L"none.txt").c_str()).COPY_FILE(target));

    const MFileName dir(Path(L"made").c_str(), true);
    EXPECT_TRUE(dir.CREATE_DIRECTORY());
    EXPECT_TRUE(dir.CREATE_DIRECTORY()) << "an existing directory";
    EXPECT_TRUE(fs::is_directory(Path(L"made")));
    EXPECT_FALSE(MFileName(Path(L"no\\such\\level").c_str(), true).CREATE_DIRECTORY());
    EXPECT_FALSE(source.CREATE_DIRECTORY()) << "a file of that name";
}

TEST_F(MFileNameFiles, RemovesFilesAndTrees) {
    WriteContent(Path(L"single.txt"), "x");
    EXPECT_TRUE(MFileName(Path(L"single.txt").c_str()).REMOVE());
    EXPECT_FALSE(Exists(Path(L"single.txt")));
    EXPECT_FALSE(MFileName(Path(L"single.txt").c_str()).REMOVE());

    fs::create_directories(Path(L"tree\\a\\b"));
    fs::create_directories(Path(L"tree\\empty"));
    WriteContent(Path(L"tree\\top.txt"), "1");
    WriteContent(Path(L"tree\\a\\b\\deep.txt"), "2");
    EXPECT_TRUE(MFileName(Path(L"tree").c_str(), true).REMOVE());
    EXPECT_FALSE(Exists(Path(L"tree")));
}

TEST_F(MFileNameFiles, RemoveDoesNotFollowDirectoryLinks) {
    fs::create_directories(Path(L"outside"));
    WriteContent(Path(L"outside\\keep.txt"), "keep");
    fs::create_directories(Path(L"tree"));
    WriteContent(Path(L"tree\\own.txt"), "own");
    if (!MakeDirectoryLink(Path(L"tree\\link"), Path(L"outside")))
        GTEST_SKIP() << "no directory links can be made here";

    // Removing the link itself, then a tree holding it: the target stays either way. Under Wine
    // the system cannot remove a host link, so the removal may fail, but never by going in.
    const bool linkRemoved = MFileName(Path(L"tree\\link").c_str()).REMOVE();
    EXPECT_EQ(linkRemoved, !Exists(Path(L"tree\\link")));
    EXPECT_TRUE(Exists(Path(L"outside\\keep.txt")));
    const bool treeRemoved = MFileName(Path(L"tree").c_str(), true).REMOVE();
    EXPECT_EQ(treeRemoved, !Exists(Path(L"tree")));
    EXPECT_TRUE(Exists(Path(L"outside\\keep.txt")));
}

TEST_F(MFileNameFiles, RenamesAndRemovesThroughTheShell) {
    WriteContent(Path(L"old.txt"), "x");
    const MFileName old(Path(L"old.txt").c_str());
    const MFileName renamed(Path(L"new.txt").c_str());
    ASSERT_TRUE(old.RENAME_SHELL(renamed, false));
    EXPECT_FALSE(old.DOES_EXIST());
    EXPECT_TRUE(renamed.DOES_EXIST());
    EXPECT_TRUE(renamed.REMOVE_SHELL(false));
    EXPECT_FALSE(renamed.DOES_EXIST());
    EXPECT_FALSE(MFileName().REMOVE_SHELL(false));
    EXPECT_FALSE(old.RENAME_SHELL(MFileName(), false));
}

TEST_F(MFileNameFiles, FillsWithSystemPaths) {
    MFileName module;
    ASSERT_TRUE(module.FILL_WITH_MODULE_PATH(nullptr));
    wchar_t expected[MAX_PATH];
    GetModuleFileNameW(nullptr, expected, MAX_PATH);
    EXPECT_STREQ(module.GET(), expected);
    EXPECT_TRUE(module.FILTER_EXT(L".exe"));

    MFileName working;
    ASSERT_TRUE(working.FILL_WITH_WORKING_PATH());
    GetCurrentDirectoryW(MAX_PATH, expected);
    EXPECT_STREQ(working.GET(), expected);
    EXPECT_STREQ(working.GET_FILE_PART(), L"") << "the folder is the directory";

    MFileName temporary;
    ASSERT_TRUE(temporary.FILL_WITH_TEMPORARY_PATH());
    GetTempPathW(MAX_PATH, expected);
    EXPECT_STREQ(temporary.GET(), expected);
}

TEST_F(MFileNameFiles, MakesTemporaryNames) {
    // The shared counter: different names without any file being created.
    MFileName first, second;
    const unsigned short afterFirst =
        first.SET_TEMP_NAME(m_folder.c_str(), nullptr, nullptr, 0xFFFF);
    const unsigned short afterSecond =
        second.SET_TEMP_NAME(m_folder.c_str(), nullptr, nullptr, 0xFFFF);
    EXPECT_STRNE(first.GET(), second.GET());
    EXPECT_EQ(afterSecond, static_cast<unsigned short>(afterFirst + 1));
    EXPECT_FALSE(first.DOES_EXIST());
    EXPECT_EQ(std::wstring(second.GET()), Path(L"~kel" + std::to_wstring(afterFirst) + L".tmp"));

    // By default in the temporary folder.
    MFileName defaults, temporary;
    defaults.SET_TEMP_NAME();
    temporary.FILL_WITH_TEMPORARY_PATH();
    EXPECT_TRUE(defaults.COMPARE(temporary, MFileName::PART_DRIVE | MFileName::PART_DIR));
    EXPECT_STREQ(defaults.GET_EXT_PART(), L".tmp");

    // A caller's start skips existing names and leaves the shared counter alone.
    WriteContent(Path(L"pre0007.dat"), "");
    MFileName named;
    EXPECT_EQ(named.SET_TEMP_NAME(m_folder.c_str(), L"pre", L".dat", 7, 4), 9);
    EXPECT_EQ(std::wstring(named.GET()), Path(L"pre0008.dat"));
    const unsigned short shared = MFileName().SET_TEMP_NAME(m_folder.c_str(), L"", nullptr);
    EXPECT_NE(shared, 9);
    EXPECT_EQ(MFileName().SET_TEMP_NAME(m_folder.c_str()), static_cast<unsigned short>(shared + 1));

    // The prefix gives way to a long folder: 256 - (241 + 4) - 1 digit leaves 10 characters.
    const std::wstring longFolder = L"C:\\" + std::wstring(240, L'd') + L"\\";
    named.SET_TEMP_NAME(longFolder.c_str(), L"abcdefghijklmnop", nullptr, 5, 0);
    EXPECT_STREQ(named.GET_FILE_PART(), L"abcdefghij5");
}

TEST_F(MFileNameFiles, AddsAUniqueIndex) {
    WriteContent(Path(L"data_1.txt"), "");
    WriteContent(Path(L"data_2.txt"), "");
    MFileName name(Path(L"data.txt").c_str());
    ASSERT_TRUE(name.ADD_UNIQUE_INDEX());
    EXPECT_STREQ(name.GET_FILE_EXT_PARTS().c_str(), L"data_3.txt");
    MFileName last(Path(L"data.txt").c_str());
    WriteContent(Path(L"data_255.txt"), "");
    EXPECT_FALSE(last.ADD_UNIQUE_INDEX(255));
    EXPECT_STREQ(last.GET_FILE_PART(), L"data");
}
