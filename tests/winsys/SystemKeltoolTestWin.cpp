// keltool sysinfo and error as a user runs them, against what the system and the library say.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "KeltoolProcess.h"
#include "MSysError.h"
#include "StdBase.h"
#include "TempFolder.h"

namespace {

using SystemKeltool = TempFolderTest;

TEST_F(SystemKeltool, SysinfoAndErrorTexts) {
    const KeltoolResult info = RunKeltool({L"sysinfo"}, m_folder);
    EXPECT_EQ(info.exitCode, 0u) << info.err;
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    ASSERT_TRUE(GlobalMemoryStatusEx(&memory));
    EXPECT_NE(info.out.find(std::to_string(memory.ullTotalPhys) + " bytes"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("system "), std::string::npos) << info.out;

    // The first line of the library's text, which its own tests hold to the system's.
    const std::wstring text = MSysError(32).GetText();
    ASSERT_FALSE(text.empty());
    const KeltoolResult error = RunKeltool({L"error", L"0x20"}, m_folder);
    EXPECT_EQ(error.exitCode, 0u);
    EXPECT_NE(error.out.find(StdBase::ConvertUnicodeToUtf8(text.substr(0, text.find(L'\r')))),
              std::string::npos)
        << error.out;
    const KeltoolResult bad = RunKeltool({L"error", L"five"}, m_folder);
    EXPECT_EQ(bad.exitCode, 2u);
    EXPECT_NE(bad.err.find("five"), std::string::npos) << bad.err;
}

} // namespace
