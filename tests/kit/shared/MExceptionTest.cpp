#include "MException.h"

#include <gtest/gtest.h>

using KelSDK::Common::MException;

namespace {

class MDerivedException : public MException {
public:
    using MException::MException;
    const wchar_t* GetName() const override { return L"MDerivedException"; }
};

} // namespace

TEST(MException, CarriesItsMessageAndReportsTheDerivedName) {
    const MDerivedException derived(L"disk full: \x00E9");
    const MException& base = derived;
    EXPECT_STREQ(L"MDerivedException", base.GetName());
    EXPECT_EQ(L"disk full: \x00E9", base.GetMessage());
    EXPECT_EQ(0, std::string(base.what()).compare(0, 11, "disk full: "));
    EXPECT_STREQ(L"MException", MException(L"plain text").GetName());
    EXPECT_STREQ("", MException().what());
}
