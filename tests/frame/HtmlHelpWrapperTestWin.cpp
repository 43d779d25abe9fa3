#include <gtest/gtest.h>
#include <windows.h>

#include "CHtmlHelpWrapper.h"

namespace {

// Closes every help window (htmlhelp.h); harmless when there is none.
const UINT kHelpCloseAll = 0x12;

} // namespace

TEST(CHtmlHelpWrapper, LoadsTheControlOnFirstRequest) {
    // Loading the library did not load the control.
    EXPECT_EQ(GetModuleHandleW(L"hhctrl.ocx"), nullptr);

    CHtmlHelpWrapper& wrapper = CHtmlHelpWrapper::mg_htmlhelpwrapper;
    EXPECT_EQ(wrapper.ShowHelp(nullptr, nullptr, kHelpCloseAll, 0), nullptr);
    EXPECT_NE(GetModuleHandleW(L"hhctrl.ocx"), nullptr);
    EXPECT_TRUE(wrapper.IsAvailable());
}
