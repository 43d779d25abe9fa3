#include "MInternalUnits.h"
#include "MUnit.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <tuple>

using namespace KelSDK::Common;

namespace {

using Changes = std::vector<std::tuple<double, double, bool>>;

// Records every notification; an optional action runs inside it.
class Recorder : public MInternalUnitsObserver {
public:
    bool _OnInternalUnitsChange(const double& oldUnits, const double& newUnits,
                                bool apply) override {
        changes.emplace_back(oldUnits, newUnits, apply);
        if (action)
            action();
        return true;
    }

    Changes changes;
    std::function<void()> action;
};

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

// Leaves the process-wide internal units as the tests found them.
class InternalUnitsTest : public ::testing::Test {
protected:
    void TearDown() override {
        m_units.SetCanChange(true);
        m_units.Set(MInternalUnits::DefaultResolution);
        m_units.SetConversionFactor(1.0);
    }
    MInternalUnits& m_units = MInternalUnits::GetInstance();
};

} // namespace

TEST_F(InternalUnitsTest, ObserversHearExactChangesWhileTheyLive) {
    EXPECT_EQ(10000.0, m_units.Get());
    Recorder first;
    auto second = std::make_unique<Recorder>();
    EXPECT_TRUE(m_units.Set(20000.0));
    EXPECT_TRUE(m_units.Set(20000.0)); // no change, no notification
    second.reset();
    EXPECT_TRUE(m_units.Set(2500.5));
    // Refused changes leave everything alone.
    m_units.SetCanChange(false);
    EXPECT_FALSE(m_units.Set(20000.0));
    m_units.SetCanChange(true);
    for (double bad : {0.0, -5.0, NaN, Infinity})
        EXPECT_FALSE(m_units.Set(bad)) << bad;
    EXPECT_EQ(2500.5, m_units.Get());
    EXPECT_EQ((Changes{{10000.0, 20000.0, true}, {20000.0, 2500.5, true}}), first.changes);

    m_units.SetConversionFactor(25.4);
    for (double bad : {0.0, -1.0, NaN})
        m_units.SetConversionFactor(bad);
    EXPECT_EQ(25.4, m_units.GetConversionFactor());
}

TEST_F(InternalUnitsTest, ObserversComingAndGoingDuringANotification) {
    auto called = std::make_unique<Recorder>();
    Recorder changer;
    auto pending = std::make_unique<Recorder>();
    Recorder last;
    std::unique_ptr<Recorder> lateComer;
    // Removing observers already called or not yet called must neither skip nor repeat any.
    changer.action = [&] {
        called.reset();
        pending.reset();
        if (!lateComer)
            lateComer = std::make_unique<Recorder>();
        EXPECT_FALSE(m_units.Set(1.0)); // no nested changes
    };
    EXPECT_TRUE(m_units.Set(5000.0));
    EXPECT_EQ(1u, changer.changes.size());
    EXPECT_EQ(1u, last.changes.size());
    ASSERT_NE(nullptr, lateComer);
    EXPECT_TRUE(lateComer->changes.empty()); // built in the new units already

    changer.action = nullptr;
    EXPECT_TRUE(m_units.Set(6000.0));
    EXPECT_EQ((Changes{{5000.0, 6000.0, true}}), lateComer->changes);
}

TEST_F(InternalUnitsTest, MillimetresFollowTheResolutionRoundedAndClamped) {
    const auto units = &MUnit::ConvertFromMmToStlUnits;
    EXPECT_EQ(12346, units(1.23456));
    ASSERT_TRUE(m_units.Set(1000.0));
    EXPECT_DOUBLE_EQ(2540.0, MUnit::_ConvertMmToStlUnits(2.54));
    EXPECT_DOUBLE_EQ(0.5, MUnit::_ConvertStlUnitsToMm(500.0));
    ASSERT_TRUE(m_units.Set(10.0));
    EXPECT_EQ(3, units(0.25)); // halves round away from zero
    EXPECT_EQ(-3, units(-0.25));
    EXPECT_EQ(-2, units(-0.249));
    EXPECT_EQ(2147483640, units(214748364.0));
    EXPECT_EQ(INT32_MAX, units(214748364.7)); // clamped to the 32-bit range
    EXPECT_EQ(INT32_MIN, units(-1e300));
    EXPECT_EQ(INT32_MAX, units(Infinity));
    EXPECT_EQ(0, units(NaN));
}
