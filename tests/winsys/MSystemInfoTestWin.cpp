// MSystemInfo and MSysError on the running system (under Wine, its own answers), checked
// against the system's own functions.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>

#include "MSysError.h"
#include "MSystemInfo.h"
#include "TestingUtility.h"

namespace {

TEST(MSystemInfoTest, DescribesTheRunningSystem) {
    const MSystemInfo info;
    const std::wstring& os = info.GET_OS_NAME();
    if (info.Succeeded()) {
        EXPECT_NE(std::wstring::npos, os.find(L" x64")) << std::string(os.begin(), os.end());
    }
    EXPECT_FALSE(info.GET_OS_STRING().IsEmpty());
    EXPECT_EQ(MSystemNames::ArchAmd64, info.GET_PROCESSOR());
    EXPECT_EQ(L"AMD64", std::wstring(info.GET_PROCESSOR_STRING()));
    EXPECT_FALSE(info.GET_PROCESSOR_LEVEL_STRING().IsEmpty());
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    EXPECT_EQ(system.dwNumberOfProcessors, info.GET_NUM_PROCESSOR_CORES());

    const std::wstring brand = info.GET_PROCESSOR_NAME().GetString();
    EXPECT_EQ(std::wstring::npos, brand.find(L"  ")) << std::string(brand.begin(), brand.end());
    if (!brand.empty()) {
        EXPECT_NE(L' ', brand.front());
        EXPECT_NE(L' ', brand.back());
    }
    EXPECT_FALSE(info.GET_PROCESSOR_VENDOR().IsEmpty());
}

TEST(MSystemInfoTest, MemoryAndDiskAgreeWithTheSystem) {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    ASSERT_TRUE(GlobalMemoryStatusEx(&status));
    EXPECT_EQ(static_cast<long long>(status.ullTotalPhys), MSystemInfo::GET_PHYSICAL_MEMORY());
    EXPECT_EQ(static_cast<long long>(status.ullTotalVirtual), MSystemInfo::GET_VIRTUAL_MEMORY());
    // The free amounts move; they stay within what there is.
    EXPECT_GT(MSystemInfo::GET_FREE_PHYSICAL_MEMORY(), 0);
    EXPECT_LE(MSystemInfo::GET_FREE_PHYSICAL_MEMORY(), MSystemInfo::GET_PHYSICAL_MEMORY());
    EXPECT_GT(MSystemInfo::GET_FREE_VIRTUAL_MEMORY(), 0);
    EXPECT_LE(MSystemInfo::GET_FREE_VIRTUAL_MEMORY(), MSystemInfo::GET_VIRTUAL_MEMORY());

    const MSystemInfo info;
    wchar_t windows[MAX_PATH];
    ASSERT_GT(GetWindowsDirectoryW(windows, MAX_PATH), 0u);
    ULARGE_INTEGER before = {}, after = {};
    ASSERT_TRUE(GetDiskFreeSpaceExW(windows, &before, nullptr, nullptr));
    const long long free = info.GET_FREE_DISK_SPACE(windows);
    ASSERT_TRUE(GetDiskFreeSpaceExW(windows, &after, nullptr, nullptr));
    // Other programs write meanwhile: the answer lies near both readings.
    const long long slack = 64ll << 20;
    EXPECT_GE(free, static_cast<long long>(std::min(before.QuadPart, after.QuadPart)) - slack);
    EXPECT_LE(free, static_cast<long long>(std::max(before.QuadPart, after.QuadPart)) + slack);

    TestingUtility log;
    const wchar_t* missing = L"C:\\no such folder\\nor this";
    EXPECT_EQ(0, info.GET_FREE_DISK_SPACE(missing));
    GetDiskFreeSpaceExW((std::wstring(missing) + L"\\").c_str(), &before, nullptr, nullptr);
    const DWORD code = GetLastError();
    EXPECT_NE(0u, code);
    EXPECT_EQ((std::vector<std::wstring>{L"In MSystemInfo::GET_FREE_DISK_SPACE() : Cannot obtain "
                                         L"free disk space on " +
                                         std::wstring(missing) + L" (error code " +
                                         std::to_wstring(code) + L")"}),
              log.GetTexts());
}

TEST(MSystemInfoTest, DisplayAndComponents) {
    int width = 0, height = 0;
    MSystemInfo::GET_RESOLUTION(width, height);
    EXPECT_EQ(GetSystemMetrics(SM_CXSCREEN), width);
    EXPECT_EQ(GetSystemMetrics(SM_CYSCREEN), height);

    TestingUtility log;
    DWORD major = 0, minor = 0, build = 0, subBuild = 0;
    const bool found = MSystemInfo().GET_IE_VERSION(major, minor, build, subBuild);
    const std::vector<std::wstring> texts = log.GetTexts();
    ASSERT_FALSE(texts.empty());
    if (found) {
        EXPECT_GT(major, 0u);
    }
    const std::wstring version = std::to_wstring(major) + L"." + std::to_wstring(minor) + L"." +
                                 std::to_wstring(build) + L"." + std::to_wstring(subBuild);
    EXPECT_EQ(found ? L"In MSystemInfo::GET_IE_VERSION() : IE V" + version + L" found"
                    : L"In MSystemInfo::GET_IE_VERSION() : No IE version found.",
              texts.back());
}

// The system's own text for the code, as FormatMessageW gives it, without the line break.
std::wstring SystemText(DWORD code) {
    wchar_t buffer[1024] = {};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, code, LANG_USER_DEFAULT, buffer, 1024, nullptr);
    while (length && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r' ||
                      buffer[length - 1] == L' '))
        --length;
    return std::wstring(buffer, length);
}

TEST(MSysErrorTest, TextsAreTheSystemsMessages) {
    int known = 0;
    for (DWORD code = 1; code < 1500; ++code) {
        const std::wstring expected = SystemText(code);
        if (expected.empty())
            continue;
        ++known;
        MSysError error;
        EXPECT_TRUE(error.Fill(code)) << code;
        EXPECT_EQ(code, error.GetCode());
        EXPECT_EQ(expected.substr(0, MSysError::TextCapacity - 1), error.GetText()) << code;
        CString loaded;
        EXPECT_EQ(std::wstring(error.GetText()),
                  std::wstring(MSysErrorCode::LoadError(loaded, code)))
            << code;
    }
    EXPECT_GT(known, 100);

    wchar_t small[12];
    EXPECT_TRUE(MSysError::Fill(small, 12, ERROR_ACCESS_DENIED));
    EXPECT_EQ(SystemText(ERROR_ACCESS_DENIED).substr(0, 11), small);

    SetLastError(ERROR_FILE_NOT_FOUND);
    MSysError last;
    EXPECT_TRUE(last.Fill(MSysError::LastError));
    EXPECT_EQ(static_cast<DWORD>(ERROR_FILE_NOT_FOUND), last.GetCode());
    EXPECT_EQ(SystemText(ERROR_FILE_NOT_FOUND), last.GetText());
}

TEST(MSysErrorTest, CodesWithoutAMessage) {
    const DWORD unknown = 0x2000FFFF;
    ASSERT_EQ(L"", SystemText(unknown));
    wchar_t buffer[64];
    EXPECT_TRUE(MSysError::Fill(buffer, 41, unknown));
    EXPECT_EQ(std::wstring(L"<error code=536936447 (0x2000FFFF)>"), buffer);
    buffer[0] = L'x';
    EXPECT_FALSE(MSysError::Fill(buffer, 40, unknown));
    EXPECT_EQ(std::wstring(L""), buffer);
    buffer[0] = L'x';
    EXPECT_FALSE(MSysError::Fill(buffer, 64, 0));
    EXPECT_EQ(std::wstring(L""), buffer);
    EXPECT_FALSE(MSysError::Fill(nullptr, 64, 5));
    CString text(L"stale");
    EXPECT_EQ(L"<error code=536936447 (0x2000FFFF)>",
              std::wstring(MSysErrorCode::LoadError(text, unknown)));
}

} // namespace
