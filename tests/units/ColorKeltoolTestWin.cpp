// keltool color hls|rgb as a user runs it, against the system's own conversions (shlwapi).
#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "KeltoolProcess.h"

namespace {

const std::filesystem::path kScratch = std::filesystem::temp_directory_path() / L"kel_color_test";

KeltoolResult Color(const std::wstring& verb, int a, int b, int c) {
    std::filesystem::create_directories(kScratch);
    return RunKeltool({L"color", verb, std::to_wstring(a), std::to_wstring(b), std::to_wstring(c)},
                      kScratch);
}

TEST(ColorKeltool, PrintsWhatTheSystemConverts) {
    // The arithmetic is compared with the system's in full by the library's tests; these check
    // the order of the arguments and the output.
    const int samples[][3] = {{128, 128, 128}, {12, 200, 77}, {250, 128, 5}};
    for (const auto& rgb : samples) {
        SCOPED_TRACE(std::to_string(rgb[0]) + " " + std::to_string(rgb[1]) + " " +
                     std::to_string(rgb[2]));
        WORD h, l, s;
        ColorRGBToHLS(RGB(rgb[0], rgb[1], rgb[2]), &h, &l, &s);
        const KeltoolResult toHls = Color(L"hls", rgb[0], rgb[1], rgb[2]);
        EXPECT_EQ(0u, toHls.exitCode) << toHls.err;
        EXPECT_EQ(std::to_string(h) + " " + std::to_string(l) + " " + std::to_string(s) + "\r\n",
                  toHls.out);

        // And back from those numbers.
        const COLORREF back = ColorHLSToRGB(h, l, s);
        char expected[64];
        std::snprintf(expected, sizeof expected, "%u %u %u #%02X%02X%02X\r\n", GetRValue(back),
                      GetGValue(back), GetBValue(back), GetRValue(back), GetGValue(back),
                      GetBValue(back));
        const KeltoolResult toRgb = Color(L"rgb", h, l, s);
        EXPECT_EQ(0u, toRgb.exitCode) << toRgb.err;
        EXPECT_EQ(expected, toRgb.out);
    }
}

TEST(ColorKeltool, RefusesValuesOutOfRange) {
    for (const auto& bad : {std::make_pair(L"hls", 256), std::make_pair(L"rgb", 241)}) {
        SCOPED_TRACE(bad.second);
        const KeltoolResult result = Color(bad.first, 0, bad.second, 0);
        EXPECT_EQ(2u, result.exitCode);
        EXPECT_EQ("", result.out);
        EXPECT_NE(std::string::npos, result.err.find(std::to_string(bad.second))) << result.err;
    }
    std::filesystem::create_directories(kScratch);
    const KeltoolResult missing = RunKeltool({L"color", L"hls", L"1", L"2"}, kScratch);
    EXPECT_EQ(2u, missing.exitCode);
    const KeltoolResult sign = RunKeltool({L"color", L"hls", L"-1", L"2", L"3"}, kScratch);
    EXPECT_EQ(2u, sign.exitCode);
}

} // namespace
