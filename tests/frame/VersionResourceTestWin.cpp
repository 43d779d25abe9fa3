#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "KelBaseVersion.h"

namespace {

// The version resource of a module loaded in this process, read as any program reads it.
std::vector<unsigned char> ReadVersionInfo(const wchar_t* module) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(module), path, MAX_PATH);
    DWORD ignored = 0;
    std::vector<unsigned char> info(GetFileVersionInfoSizeW(path, &ignored));
    if (info.empty() || !GetFileVersionInfoW(path, 0, static_cast<DWORD>(info.size()), info.data()))
        info.clear();
    return info;
}

std::wstring Value(std::vector<unsigned char>& info, const wchar_t* name) {
    void* text = nullptr;
    UINT length = 0;
    std::wstring key = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    if (!VerQueryValueW(info.data(), key.c_str(), &text, &length) || length == 0)
        return L"";
    return static_cast<const wchar_t*>(text);
}

} // namespace

TEST(VersionResource, LibraryReportsTheProjectVersion) {
    std::vector<unsigned char> info = ReadVersionInfo(L"KelSDK.Base.dll");
    ASSERT_FALSE(info.empty());

    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(info.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    std::wstring version = KelBaseGetVersion();
    std::wstring fromFixed = std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L"." +
                             std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L"." +
                             std::to_wstring(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(fromFixed, version);
    EXPECT_EQ(fixed->dwProductVersionMS, fixed->dwFileVersionMS);
    EXPECT_EQ(static_cast<DWORD>(VFT_DLL), fixed->dwFileType);

    EXPECT_EQ(Value(info, L"FileVersion"), version);
    EXPECT_EQ(Value(info, L"ProductVersion"), version);
    EXPECT_EQ(Value(info, L"OriginalFilename"), L"KelSDK.Base.dll");
    EXPECT_EQ(Value(info, L"ProductName"), L"Kel SDK");
    EXPECT_EQ(Value(info, L"FileDescription"), L"Kel SDK base utility library");
}
