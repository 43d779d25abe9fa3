#include "InternalUnitsFixture.h"
#include "MUnit.h"

#include <cmath>
#include <cstdint>
#include <limits>

using KelSDK::Common::MInternalUnits;
using KelSDK::Common::MUnit;

TEST_F(InternalUnitsTest, MillimetresFollowTheResolution) {
    EXPECT_DOUBLE_EQ(25400.0, MUnit::_ConvertMmToStlUnits(2.54));
    EXPECT_DOUBLE_EQ(2.54, MUnit::_ConvertStlUnitsToMm(25400.0));
    EXPECT_EQ(12346, MUnit::ConvertFromMmToStlUnits(1.23456));

    ASSERT_TRUE(MInternalUnits::GetInstance().Set(1000.0));
    EXPECT_DOUBLE_EQ(2540.0, MUnit::_ConvertMmToStlUnits(2.54));
    EXPECT_DOUBLE_EQ(0.5, MUnit::_ConvertStlUnitsToMm(500.0));
    EXPECT_EQ(1235, MUnit::ConvertFromMmToStlUnits(1.23456));

    // A round trip is exact up to floating-point rounding at any resolution.
    ASSERT_TRUE(MInternalUnits::GetInstance().Set(3333.0));
    for (double mm : {-1000.0, -0.001, 0.0, 0.3, 7.25, 123456.789})
        EXPECT_NEAR(mm, MUnit::_ConvertStlUnitsToMm(MUnit::_ConvertMmToStlUnits(mm)),
                    1e-12 * (1.0 + std::fabs(mm)));
}

TEST_F(InternalUnitsTest, IntegerUnitsRoundAndStayInRange) {
    ASSERT_TRUE(MInternalUnits::GetInstance().Set(10.0));
    EXPECT_EQ(3, MUnit::ConvertFromMmToStlUnits(0.25));   // 2.5 rounds away from zero
    EXPECT_EQ(-3, MUnit::ConvertFromMmToStlUnits(-0.25)); // -2.5 as well
    EXPECT_EQ(2, MUnit::ConvertFromMmToStlUnits(0.249));
    EXPECT_EQ(-2, MUnit::ConvertFromMmToStlUnits(-0.249));

    constexpr int32_t most = std::numeric_limits<int32_t>::max();
    constexpr int32_t least = std::numeric_limits<int32_t>::min();
    EXPECT_EQ(most, MUnit::ConvertFromMmToStlUnits(214748364.7));
    EXPECT_EQ(most, MUnit::ConvertFromMmToStlUnits(1e300));
    EXPECT_EQ(least, MUnit::ConvertFromMmToStlUnits(-1e300));
    EXPECT_EQ(most, MUnit::ConvertFromMmToStlUnits(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(0, MUnit::ConvertFromMmToStlUnits(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(2147483640, MUnit::ConvertFromMmToStlUnits(214748364.0));
}
