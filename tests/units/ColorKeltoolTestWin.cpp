// keltool color hls|rgb as a user runs it, against the system's own conversions (shlwapi).
#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "KeltoolProcess.h"

namespace {

// The arithmetic is compared with the system's in full by the library's tests; this checks the
// order of the arguments, the output and a refused value.
TEST(ColorKeltool, PrintsWhatTheSystemConvertsAndRefusesValuesOutOfRange) {
    const std::filesystem::path scratch =
        std::filesystem::temp_directory_path() / L"kel_color_test";
    std::filesystem::create_directories(scratch);
    WORD h, l, s;
    ColorRGBToHLS(RGB(12, 200, 77), &h, &l, &s);
    KeltoolResult result = RunKeltool({L"color", L"hls", L"12", L"200", L"77"}, scratch);
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(std::to_string(h) + " " + std::to_string(l) + " " + std::to_string(s) + "\r\n",
              result.out);

    // And back from those numbers.
    const COLORREF back = ColorHLSToRGB(h, l, s);
    char expected[64];
    std::snprintf(expected, sizeof expected, "%u %u %u #%02X%02X%02X\r\n", GetRValue(back),
                  GetGValue(back), GetBValue(back), GetRValue(back), GetGValue(back),
                  GetBValue(back));
    result = RunKeltool(
        {L"color", L"rgb", std::to_wstring(h), std::to_wstring(l), std::to_wstring(s)}, scratch);
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_EQ(expected, result.out);

    result = RunKeltool({L"color", L"rgb", L"0", L"241", L"0"}, scratch);
    EXPECT_EQ(2u, result.exitCode);
    EXPECT_EQ("", result.out);
    EXPECT_NE(std::string::npos, result.err.find("241")) << result.err;
}

} // namespace
