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
    try {
        throw MDerivedException(L"disk full: \x00E9");
    } catch (const std::exception& caught) {
        const auto* base = dynamic_cast<const MException*>(&caught);
        ASSERT_NE(nullptr, base);
        EXPECT_STREQ(L"MDerivedException", base->GetName());
        EXPECT_EQ(L"disk full: \x00E9", base->GetMessage());
        EXPECT_EQ(0, std::string(caught.what()).compare(0, 11, "disk full: "));
    }
    const MException plain(L"plain text");
    EXPECT_STREQ(L"MException", plain.GetName());
    EXPECT_STREQ("plain text", plain.what());
    EXPECT_STREQ("", MException().what());
}
