// keltool --window under a real X display: the window is looked at through the window system
// as another program sees it (its bars, its text line, its abort button), photographed, and
// its abort button clicked while a long checksum runs.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "KeltoolProcess.h"
#include "ProgressWindow.h"

namespace fs = std::filesystem;
using Keltool::ProgressWindow;

namespace {

// The top-level progress window of the process, null while it has none.
HWND FindProgressWindow(DWORD process) {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, ProgressWindow::ClassName, nullptr))) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process)
            return window;
    }
    return nullptr;
}

int BarPosition(HWND window, int level) {
    HWND bar = GetDlgItem(window, ProgressWindow::FirstBarId + level);
    return bar ? static_cast<int>(SendMessageW(bar, PBM_GETPOS, 0, 0)) : -1;
}

std::wstring Text(HWND control) {
    wchar_t text[512] = {};
    GetWindowTextW(control, text, 512);
    return text;
}

// Asks the X display's wrapper (scripts/with-xvfb.sh) for a PNG of the screen; true when it
// arrived. The wrapper's folder comes as a Unix path, which Wine shows on drive Z:.
bool Screenshot(const std::wstring& name) {
    const char* folder = std::getenv("KEL_SCREENSHOTS");
    if (!folder)
        return false;
    const fs::path shots = fs::path(L"Z:\\") / fs::path(folder).relative_path();
    const fs::path png = shots / (name + L".png");
    std::error_code ignored;
    fs::remove(png, ignored);
    std::ofstream(shots / (name + L".request")).put('\n');
    for (int i = 0; i < 200 && !fs::exists(png); ++i)
        Sleep(50);
    return fs::exists(png) && fs::file_size(png) > 0;
}

} // namespace

TEST(ProgressWindow, ShowsLevelsAndStopsOnAbort) {
    const fs::path dir = fs::temp_directory_path() / L"kel_progress_window_test";
    fs::create_directories(dir);
    // One file of 32 MiB named many times: long enough a run to look at it and abort it.
    const std::string block(32u << 20, '\x5A');
    std::ofstream(dir / L"f", std::ios::binary).write(block.data(), block.size());
    std::vector<std::wstring> arguments = {L"--window", L"crc32", L"--"};
    const std::wstring file = (dir / L"f").wstring();
    arguments.insert(arguments.end(), 400, file);
    KeltoolProcess keltool(arguments, dir);

    HWND window = nullptr;
    for (int i = 0; i < 600 && !window; ++i, Sleep(50))
        window = FindProgressWindow(keltool.Id());
    ASSERT_NE(nullptr, window) << "no progress window appeared";
    // Wait until the run is a few files in, so both levels have moved.
    for (int i = 0; i < 600 && BarPosition(window, 0) < 1; ++i)
        Sleep(50);

    EXPECT_TRUE(IsWindowVisible(window));
    const int outer = BarPosition(window, 0);
    EXPECT_GE(outer, 1) << "the files level";
    EXPECT_LT(outer, 100);
    const int inner = BarPosition(window, 1);
    EXPECT_GE(inner, 0) << "the level of the file being read";
    EXPECT_LE(inner, 100);
    EXPECT_EQ(0, BarPosition(window, 2)) << "no third level";
    EXPECT_EQ(file, Text(GetDlgItem(window, ProgressWindow::TextId)));
    HWND abort = GetDlgItem(window, ProgressWindow::AbortId);
    EXPECT_TRUE(IsWindowVisible(abort)) << "shown on message 2028";
    EXPECT_TRUE(IsWindowEnabled(abort));
    EXPECT_EQ(L"Abort", Text(abort));
    EXPECT_TRUE(Screenshot(L"progress-window")) << "no screenshot (run under with-xvfb.sh)";

    // A click as the user makes it: the button's own message, posted to keltool's thread.
    PostMessageW(abort, BM_CLICK, 0, 0);
    for (int i = 0; i < 100 && IsWindowEnabled(abort); ++i)
        Sleep(50);
    EXPECT_FALSE(IsWindowEnabled(abort)) << "the click disables the button";
    const KeltoolResult result = keltool.Finish(60000);
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("aborted by the user")) << result.err;
    // The files before the abort were checked and printed, not all of them.
    const std::size_t lines = std::count(result.out.begin(), result.out.end(), '\n');
    EXPECT_GE(lines, 1u);
    EXPECT_LT(lines, 400u);
    std::error_code ignored;
    fs::remove_all(dir, ignored);
}
