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
    for (const DWORD code : {2ul, 5ul, 32ul, 1223ul}) {
        const std::wstring text = MSysError(code).GetText();
        ASSERT_FALSE(text.empty()) << code;
        const KeltoolResult error = RunKeltool({L"error", std::to_wstring(code)}, m_folder);
        EXPECT_EQ(error.exitCode, 0u) << code;
        EXPECT_NE(error.out.find(StdBase::ConvertUnicodeToUtf8(text.substr(0, text.find(L'\r')))),
                  std::string::npos)
            << code << ": " << error.out;
    }
    EXPECT_EQ(RunKeltool({L"error", L"0x20"}, m_folder).out,
              RunKeltool({L"error", L"32"}, m_folder).out);
    const KeltoolResult bad = RunKeltool({L"error", L"five"}, m_folder);
    EXPECT_EQ(bad.exitCode, 2u);
    EXPECT_NE(bad.err.find("five"), std::string::npos) << bad.err;
}

} // namespace
