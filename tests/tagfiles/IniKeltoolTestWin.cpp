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
    result = Run({L"ini", L"list", file});
    EXPECT_EQ("[Window]\r\n[Paths]\r\n", result.out);
    result = Run({L"ini", L"list", file, L"window"});
    EXPECT_EQ("Left=10\r\ntitle=caf\xC3\xA9\r\n", result.out);

    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Window", L"left", L"-5"}).exitCode);
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"New", L"k", L" v "}).exitCode);
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Paths"}).exitCode);
    EXPECT_EQ(0u, Run({L"ini", L"set", file, L"Window", L"title"}).exitCode);
    EXPECT_EQ("; app\r\n[Window]\r\nLeft = -5\r\n[New]\r\nk=\" v \"\r\n", ReadRaw(L"app.ini"));
    EXPECT_EQ(-5, static_cast<int>(GetPrivateProfileIntW(L"window", L"left", 0, file.c_str())));

    // A missing file is created by set, and named with the system's code by get and list.
    const std::wstring fresh = Path(L"fresh.ini");
    EXPECT_EQ(0u, Run({L"ini", L"set", fresh, L"S", L"k", L"1"}).exitCode);
    EXPECT_EQ("[S]\r\nk=1\r\n", ReadRaw(L"fresh.ini"));
    const std::wstring missing = Path(L"missing.ini");
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"ini", L"get", missing, L"S", L"k"},
          {L"ini", L"list", missing}}) {
        result = Run(arguments);
        EXPECT_EQ(1u, result.exitCode) << arguments[1];
        EXPECT_NE(std::string::npos, result.err.find("missing.ini\": ")) << result.err;
        EXPECT_NE(std::string::npos, result.err.find("(error code 2)")) << result.err;
    }
    result = Run({L"ini", L"set", Path(L"no folder\\x.ini"), L"S", L"k", L"1"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("(error code 3)")) << result.err;
    result = Run({L"ini", L"get", file, L"Window", L"nosuch"});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("no key \"nosuch\" in [Window]")) << result.err;
    result = Run({L"ini", L"set", file, L"S", L"k", L"two\nlines"});
    EXPECT_EQ(1u, result.exitCode);

    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{L"ini"},
                                                       {L"ini", L"get", file, L"Window"},
                                                       {L"ini", L"list", file, L"a", L"b"},
                                                       {L"ini", L"set", file},
                                                       {L"ini", L"drop", file},
                                                       {L"ini", L"--all", L"list", file}})
        EXPECT_EQ(2u, Run(arguments).exitCode) << arguments.size() << " arguments";
}
