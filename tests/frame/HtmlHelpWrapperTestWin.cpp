#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "CHtmlHelpWrapper.h"
#include "Logging.h"

namespace {

// Closes every help window (htmlhelp.h); harmless when there is none.
const UINT kHelpCloseAll = 0x12;

} // namespace

TEST(CHtmlHelpWrapper, LoadsTheControlOnFirstRequest) {
    // Loading the library did not load the control, nor does closing help never shown.
    EXPECT_EQ(GetModuleHandleW(L"hhctrl.ocx"), nullptr);
    CHtmlHelpWrapper& wrapper = CHtmlHelpWrapper::mg_htmlhelpwrapper;
    EXPECT_TRUE(wrapper.CloseAll());
    EXPECT_EQ(GetModuleHandleW(L"hhctrl.ocx"), nullptr);

    EXPECT_EQ(wrapper.ShowHelp(nullptr, nullptr, kHelpCloseAll, 0), nullptr);
    EXPECT_NE(GetModuleHandleW(L"hhctrl.ocx"), nullptr);
    EXPECT_TRUE(wrapper.IsAvailable());
    EXPECT_EQ(0u, wrapper.GetLastError());
    EXPECT_TRUE(wrapper.CloseAll());
    // A help file that is not there opens no window.
    const std::wstring missing =
        (std::filesystem::temp_directory_path() / L"kel_no_such_help.chm").wstring();
    EXPECT_EQ(nullptr, wrapper.ShowTopic(nullptr, missing.c_str(), L"index.htm"));
}

TEST(CHtmlHelpWrapper, UnloadFreesTheControlUntilTheNextRequest) {
    CHtmlHelpWrapper wrapper(true);
    ASSERT_TRUE(wrapper.IsAvailable());
    wrapper.Unload();
    EXPECT_TRUE(wrapper.CloseAll()); // nothing loaded: nothing to close
    EXPECT_TRUE(wrapper.IsAvailable());
    EXPECT_EQ(nullptr, wrapper.ShowHelp(nullptr, nullptr, kHelpCloseAll, 0));
}

TEST(CHtmlHelpWrapper, WithoutAControlRequestsFailSoftlyAndOneLineIsLogged) {
    auto log = std::make_shared<KelSDK::Common::Logging::MemorySink>();
    KelSDK::Common::Logging::GetLogger("lib.kelbase").AddSink(log);
    CHtmlHelpWrapper wrapper(false, L"kel_no_such_control.ocx");
    EXPECT_TRUE(log->GetTexts().empty()); // nothing is tried before the first request
    EXPECT_EQ(nullptr, wrapper.ShowTopic(nullptr, L"help.chm"));
    EXPECT_EQ(nullptr, wrapper.ShowHelp(nullptr, nullptr, kHelpCloseAll, 0));
    EXPECT_FALSE(wrapper.IsAvailable());
    EXPECT_FALSE(wrapper.CloseAll());
    EXPECT_EQ(DWORD(ERROR_MOD_NOT_FOUND), wrapper.GetLastError());

    // A module without the entry is no control either.
    CHtmlHelpWrapper noEntry(true, L"kernel32.dll");
    EXPECT_FALSE(noEntry.IsAvailable());
    EXPECT_EQ(DWORD(ERROR_PROC_NOT_FOUND), noEntry.GetLastError());
    KelSDK::Common::Logging::GetLogger("lib.kelbase").RemoveSink(log);

    const std::vector<std::wstring> logged = log->GetTexts();
    ASSERT_EQ(2u, logged.size());
    EXPECT_EQ(L"In CHtmlHelpWrapper::IsAvailable() : cannot load the help control "
              L"\"kel_no_such_control.ocx\" (error code 126)",
              logged[0]);
    EXPECT_EQ(L"In CHtmlHelpWrapper::IsAvailable() : no HtmlHelpW in the help control "
              L"\"kernel32.dll\" (error code 127)",
              logged[1]);
}
