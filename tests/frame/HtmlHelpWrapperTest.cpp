#include <gtest/gtest.h>

#include "CHtmlHelpWrapper.h"

namespace {

// Commands of the help control (htmlhelp.h).
const UINT kHelpInitialize = 0x1C;
const UINT kHelpUninitialize = 0x1D;

} // namespace

TEST(CHtmlHelpWrapper, LoadsTheControlOnFirstUseAndForwards) {
    CHtmlHelpWrapper& wrapper = CHtmlHelpWrapper::mg_htmlhelpwrapper;
    ASSERT_TRUE(wrapper.IsAvailable());

    DWORD_PTR cookie = 0;
    wrapper.ShowHelp(nullptr, nullptr, kHelpInitialize, reinterpret_cast<DWORD_PTR>(&cookie));
    EXPECT_NE(cookie, 0u);
    wrapper.ShowHelp(nullptr, nullptr, kHelpUninitialize, cookie);
}
