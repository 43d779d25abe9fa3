// keltool ini as a user runs it, checked against the system's profile functions.
#include <windows.h>

#include <gtest/gtest.h>

#include "KeltoolProcess.h"
#include "TempFolder.h"

class IniKeltoolTest : public TempFolderTest {
protected:
    KeltoolResult Run(const std::vector<std::wstring>& arguments) {
        return RunKeltool(arguments, m_folder / L"scratch");
    }
};

TEST_F(IniKeltoolTest, GetSetListAndErrors) {
    const std::wstring file = Path(L"app.ini");
    WriteRaw(L"app.ini",
             "; app\r\n[Window]\r\nLeft = 10\r\ntitle=\"caf\xE9\"\r\n[Paths]\r\nhome=C:\\");

    KeltoolResult result = Run({L"ini", L"get", file, L"window", L"TITLE"});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ("caf\xC3\xA9\r\n", result.out); // printed as UTF-8
    result = Run({L"ini", L"list", file, L"window"});
    EXPECT_EQ("Left=10\r\ntitle=caf\xC3\xA9\r\n", result.out);

    // A value, a section deleted, a key deleted.
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Window", L"left", L"-5"}).exitCode);
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Paths"}).exitCode);
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Window", L"title"}).exitCode);
    EXPECT_EQ("; app\r\n[Window]\r\nLeft = -5\r\n", ReadRaw(L"app.ini"));
    EXPECT_EQ(-5, static_cast<int>(GetPrivateProfileIntW(L"window", L"left", 0, file.c_str())));

    result = Run({L"ini", L"get", Path(L"missing.ini"), L"S", L"k"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("(error code 2)")) << result.err;
    result = Run({L"ini", L"get", file, L"Window", L"nosuch"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("no key \"nosuch\" in [Window]")) << result.err;
    EXPECT_EQ(2u, Run({L"ini", L"get", file, L"Window"}).exitCode);
}
