// The registry classes and `keltool reg` against a real client: the system's reg tool reads
// what they write and lists what keltool lists; a saved hive loads back.
#include <filesystem>
#include <string>
#include <vector>

#include "COXRegistry.h"
#include "KeltoolProcess.h"
#include "MRegKey.h"
#include "RegistryTestKey.h"
#include "StdBase.h"

namespace fs = std::filesystem;

namespace {

class RegInteropTest : public RegistryTest::Fixture {
protected:
    RegInteropTest() { fs::create_directories(m_dir); }
    ~RegInteropTest() override {
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    // The key as the reg tool names it.
    std::wstring FullName(const std::wstring& below = L"") const {
        return L"HKEY_CURRENT_USER\\" + Path() + (below.empty() ? L"" : L"\\" + below);
    }

    // The system's reg tool (an absolute path replaces the test folder).
    KeltoolResult Reg(const std::vector<std::wstring>& arguments) {
        wchar_t system[MAX_PATH];
        GetSystemDirectoryW(system, MAX_PATH);
        const std::wstring reg = (fs::path(system) / L"reg.exe").wstring();
        return KeltoolProcess(arguments, m_dir, reg.c_str()).Finish();
    }
    KeltoolResult Keltool(const std::vector<std::wstring>& arguments) {
        std::vector<std::wstring> all = {L"reg"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunKeltool(all, m_dir);
    }

    const fs::path m_dir = fs::temp_directory_path() / L"kel_reg_interop_test";
};

std::string Utf8(const std::wstring& text) {
    return StdBase::ConvertUnicodeToUtf8(text);
}

// The setters of both classes, read by the reg tool: stored types and data.
TEST_F(RegInteropTest, RegToolReadsWhatTheClassesWrote) {
    MRegKey key(Path().c_str(), MRegKey(HKEY_CURRENT_USER, 0));
    ASSERT_EQ(1, key._SetRegStr(L"m text", L"two words"));
    ASSERT_EQ(1, key.SetRegInt(L"m int", -42));
    ASSERT_EQ(1, key.SetRegDWORD(L"m dword", 0xBEEF));
    const BYTE bytes[] = {0x00, 0xAB, 0x10};
    ASSERT_EQ(1, key.SetRegBinary(L"m bytes", bytes, sizeof bytes));
    COXRegistry reg;
    ASSERT_EQ(1, reg.OpenPath(Path().c_str(), HKEY_CURRENT_USER));
    CByteArray array;
    for (BYTE b : {0xFF, 0x00, 0x7F})
        array.Add(b);
    ASSERT_EQ(1, reg.SetValue(L"", CString(L"default")));
    ASSERT_EQ(1, reg.SetValue(L"c text", CString(L"x y")));
    ASSERT_EQ(1, reg.SetValue(L"c dword", DWORD(0xDEADBEEF)));
    ASSERT_EQ(1, reg.SetValue(L"c bytes", array));

    const auto result = Reg({L"query", FullName()});
    ASSERT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ("\r\n" + Utf8(FullName()) +
                  "\r\n"
                  "    (Default)    REG_SZ    default\r\n"
                  "    c bytes    REG_BINARY    FF007F\r\n"
                  "    c dword    REG_DWORD    0xdeadbeef\r\n"
                  "    c text    REG_SZ    x y\r\n"
                  "    m bytes    REG_BINARY    00AB10\r\n"
                  "    m dword    REG_DWORD    0xbeef\r\n"
                  "    m int    REG_SZ    -42\r\n"
                  "    m text    REG_SZ    two words\r\n"
                  "\r\n",
              result.out);
}

TEST_F(RegInteropTest, KeltoolListsAsRegQueriesAndChangesWhatRegSees) {
    const std::wstring key = L"HKCU\\" + Path() + L"\\tool";
    for (const std::vector<std::wstring>& set :
         {std::vector<std::wstring>{L"set", key + L"\\sub\\deeper"},
          {L"set", key, L"text", L"REG_SZ", L"two words"},
          {L"set", key, L"", L"REG_SZ", L"default"},
          {L"set", key, L"dword", L"REG_DWORD", L"0x2a"},
          {L"set", key, L"bytes", L"REG_BINARY", L"00ff10"},
          {L"set", key, L"multi", L"REG_MULTI_SZ", L"a\\0b"},
          {L"set", key, L"expand", L"REG_EXPAND_SZ", L"%PATH%"}}) {
        const auto result = Keltool(set);
        EXPECT_EQ(0u, result.exitCode) << Utf8(set.back()) << result.err;
    }
    const auto listed = Keltool({L"list", key});
    const auto queried = Reg({L"query", FullName(L"tool")});
    EXPECT_EQ(0u, listed.exitCode);
    EXPECT_EQ(queried.out, listed.out);
    EXPECT_NE(std::string::npos, listed.out.find("    dword    REG_DWORD    0x2a\r\n"));
    EXPECT_NE(std::string::npos, listed.out.find(Utf8(FullName(L"tool\\sub")) + "\r\n"));

    // Wine's reg prints no quad words and writes the console's code page, so these are checked
    // through keltool alone, which writes UTF-8.
    ASSERT_EQ(0u, Keltool({L"set", key, L"quad", L"REG_QWORD", L"4294967296"}).exitCode);
    ASSERT_EQ(0u, Keltool({L"set", key, L"\u2713", L"REG_SZ", L"Gr\u00fc\u00dfe"}).exitCode);
    const std::string shown = "\r\n" + Utf8(FullName(L"tool")) + "\r\n";
    EXPECT_EQ(shown + "    quad    REG_QWORD    0x100000000\r\n\r\n",
              Keltool({L"get", key, L"quad"}).out);
    EXPECT_EQ(shown + Utf8(L"    \u2713    REG_SZ    Gr\u00fc\u00dfe\r\n\r\n"),
              Keltool({L"get", key, L"\u2713"}).out);

    EXPECT_EQ(0u, Keltool({L"delete", key, L"text"}).exitCode);
    EXPECT_EQ(1u, Reg({L"query", FullName(L"tool"), L"/v", L"text"}).exitCode);
    EXPECT_EQ(0u, Keltool({L"delete", key}).exitCode);
    EXPECT_FALSE(RegistryTest::KeyExists(Path() + L"\\tool"));

    const auto missing = Keltool({L"get", key, L"text"});
    EXPECT_EQ(1u, missing.exitCode);
    EXPECT_NE(std::string::npos, missing.err.find("(error code 2)")) << missing.err;
    for (const std::vector<std::wstring>& wrong :
         {std::vector<std::wstring>{L"get", L"HKXX\\Software"},
          {L"set", key, L"n", L"REG_DWORD", L"4294967296"},
          {L"set", key, L"n", L"REG_TEXT", L"x"},
          {L"delete", L"HKCU"}}) {
        const auto result = Keltool(wrong);
        EXPECT_EQ(2u, result.exitCode) << Utf8(wrong.back());
    }
    EXPECT_FALSE(RegistryTest::KeyExists(Path() + L"\\tool"));
}

// Loading and saving hives needs the backup and restore privileges, held but not enabled.
void EnablePrivilege(const wchar_t* name) {
    HANDLE token = nullptr;
    ASSERT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &token));
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    EXPECT_TRUE(LookupPrivilegeValueW(nullptr, name, &privileges.Privileges[0].Luid));
    EXPECT_TRUE(AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr));
    CloseHandle(token);
}

TEST_F(RegInteropTest, ASavedHiveLoadsBack) {
    EnablePrivilege(SE_BACKUP_NAME);
    EnablePrivilege(SE_RESTORE_NAME);
    {
        MRegKey deep(L"hive\\inner", MRegKey(Path().c_str(), MRegKey(HKEY_CURRENT_USER, 0)));
        ASSERT_EQ(1, deep._SetRegStr(L"text", L"saved"));
        ASSERT_EQ(1, deep.SetRegDWORD(L"dword", 7));
    }
    const fs::path file = m_dir / L"saved.hive";
    COXRegistry saver;
    ASSERT_EQ(1, saver.OpenPath((Path() + L"\\hive").c_str(), HKEY_CURRENT_USER));
    ASSERT_EQ(1, saver.SaveToFile(file.c_str()));

    const std::wstring mount = L"KelSDK.Hive." + std::to_wstring(GetCurrentProcessId());
    COXRegistry loader;
    ASSERT_EQ(1, loader.Connect(HKEY_USERS));
    ASSERT_EQ(1, loader.LoadFromFile(mount.c_str(), file.c_str()));
    ASSERT_EQ(1, loader.OpenKey((mount + L"\\inner").c_str(), COXRegistry::permissionRead));
    CString text;
    DWORD dword = 0;
    EXPECT_EQ(1, loader.GetStringValue(L"text", text));
    EXPECT_EQ(L"saved", std::wstring(text));
    EXPECT_EQ(1, loader.GetDoubleWordValue(L"dword", dword));
    EXPECT_EQ(7u, dword);
    ASSERT_EQ(1, loader.OpenKey(L"", COXRegistry::permissionRead));
    EXPECT_EQ(1, loader.UnLoadKey(mount.c_str()));
    EXPECT_FALSE(RegistryTest::KeyExists(mount, HKEY_USERS));
}

} // namespace
