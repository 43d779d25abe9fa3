// keltool sysinfo and error as a user runs them, against what the system itself says.
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "KeltoolProcess.h"
#include "StdBase.h"

namespace {

namespace fs = std::filesystem;

// The system's own text of a code, as FormatMessageW gives it (line ends as keltool prints
// them: CRLF).
std::string SystemText(DWORD code) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring wide(text ? text : L"", length);
    LocalFree(text);
    return StdBase::ConvertUnicodeToUtf8(wide);
}

TEST(SystemKeltool, SysinfoAndErrorTexts) {
    const fs::path scratch = fs::temp_directory_path() / L"kel_system_keltool";
    fs::create_directories(scratch);

    const KeltoolResult info = RunKeltool({L"sysinfo"}, scratch);
    EXPECT_EQ(info.exitCode, 0u) << info.err;
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    ASSERT_TRUE(GlobalMemoryStatusEx(&memory));
    EXPECT_NE(info.out.find(std::to_string(memory.ullTotalPhys) + " bytes"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("system "), std::string::npos) << info.out;

    for (const DWORD code : {2ul, 5ul, 32ul, 1223ul}) {
        const std::string expected = SystemText(code);
        ASSERT_FALSE(expected.empty()) << code;
        const KeltoolResult error = RunKeltool({L"error", std::to_wstring(code)}, scratch);
        EXPECT_EQ(error.exitCode, 0u) << code;
        EXPECT_NE(error.out.find(expected.substr(0, expected.find('\r'))), std::string::npos)
            << code << ": " << error.out;
    }
    EXPECT_EQ(RunKeltool({L"error", L"0x20"}, scratch).out,
              RunKeltool({L"error", L"32"}, scratch).out);
    const KeltoolResult bad = RunKeltool({L"error", L"five"}, scratch);
    EXPECT_EQ(bad.exitCode, 2u);
    EXPECT_NE(bad.err.find("five"), std::string::npos) << bad.err;

    std::error_code ignored; // keltool's output files may still be closing
    fs::remove_all(scratch, ignored);
}

} // namespace
