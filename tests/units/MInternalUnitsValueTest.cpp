#include <gtest/gtest.h>

#include <climits>
#include <tuple>
#include <vector>

#include "MInternalUnitsValue.h"

using KelSDK::Common::MInternalUnits;

namespace {

template <class T, int N> using V = MInternalUnitsValue<T, N>;

// The twelve exported instantiations.
using Values = std::tuple<V<double, 1>, V<double, 2>, V<double, 3>, V<float, 1>, V<float, 2>,
                          V<float, 3>, V<int, 1>, V<long, 1>, V<unsigned int, 1>,
                          V<unsigned long, 1>, V<short, 1>, V<unsigned short, 1>>;

// Their values in order, each exact as a double.
std::vector<double> Read(const Values& values) {
    return std::apply(
        [](const auto&... value) { return std::vector<double>{static_cast<double>(value)...}; },
        values);
}

// A bare observer: its notification does nothing and says so.
struct BareObserver : IInternalUnitsObserver {};

// Leaves the process-wide resolution as the tests found it.
class InternalUnitsValueTest : public ::testing::Test {
protected:
    void TearDown() override {
        MInternalUnits::GetInstance().SetCanChange(true);
        IInternalUnitsObserver::SetInternalUnits(IInternalUnitsObserver::m_default_units);
    }
};

} // namespace

// Each rescale runs in double and is converted back per type, so integers accumulate their
// truncation: halving and doubling again loses what the first truncation cut.
TEST_F(InternalUnitsValueTest, EveryInstantiationFollowsResolutionChanges) {
    Values values{3, 3, 3, 3, 3, 3, 3, -3, 3000000001u, 7, 20001, 40001};
    const struct {
        double resolution;
        std::vector<double> expected;
    } steps[] = {
        {5000, {1.5, 0.75, 0.375, 1.5f, 0.75f, 0.375f, 1, -1, 1500000000u, 3, 10000, 20000}},
        {10000, {3, 3, 3, 3, 3, 3, 2, -2, 3000000000u, 6, 20000, 40000}},
        // Wider results: through 64 bits and cut to 32 for the unsigned ones, cut to 16 bits
        // for the short ones.
        {20000, {6, 12, 24, 6, 12, 24, 4, -4, 1705032704u, 12, -25536, 14464}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.resolution);
        EXPECT_TRUE(IInternalUnitsObserver::SetInternalUnits(step.resolution));
        EXPECT_EQ(IInternalUnitsObserver::GetInternalUnits(), step.resolution);
        EXPECT_EQ(Read(values), step.expected);
    }

    // Refused while changes are locked: nothing moves.
    MInternalUnits::GetInstance().SetCanChange(false);
    EXPECT_FALSE(IInternalUnitsObserver::IsInternalUnitsChangeAllowed());
    EXPECT_FALSE(IInternalUnitsObserver::SetInternalUnits(40000));
    EXPECT_EQ(Read(values), steps[2].expected);
}

TEST_F(InternalUnitsValueTest, OutOfRangeResultsBecomeTheIndefiniteInteger) {
    V<int, 1> large(2000000000);
    V<unsigned int, 1> unsignedLarge(4000000000u);
    ASSERT_TRUE(IInternalUnitsObserver::SetInternalUnits(40000));
    EXPECT_EQ(static_cast<int>(large), INT_MIN);
    // 1.6e10 fits in 64 bits; its low 32 bits are kept.
    EXPECT_EQ(static_cast<unsigned int>(unsignedLarge), 3115098112u);
}

TEST_F(InternalUnitsValueTest, DirectNotificationsAndCopies) {
    V<double, 2> area(4.0);
    EXPECT_TRUE(area._OnInternalUnitsChange(10000, 20000, false));
    EXPECT_EQ(area, 4.0);
    EXPECT_TRUE(area._OnInternalUnitsChange(10000, 20000, true));
    EXPECT_EQ(area, 16.0);
    BareObserver bare;
    EXPECT_FALSE(bare._OnInternalUnitsChange(10000, 20000, true));

    // A copy keeps the value but does not follow later changes; an assigned object keeps its
    // own registration.
    V<double, 1> length(5.0);
    V<double, 1> copy(length);
    V<double, 1> assigned;
    assigned = length;
    ASSERT_TRUE(IInternalUnitsObserver::SetInternalUnits(20000));
    EXPECT_EQ(length, 10.0);
    EXPECT_EQ(copy, 5.0);
    EXPECT_EQ(assigned, 10.0);
}

TEST_F(InternalUnitsValueTest, DefaultResolutionConversions) {
    ASSERT_TRUE(IInternalUnitsObserver::SetInternalUnits(20000));
    const V<int, 1> length(5);
    const V<double, 2> area(8.0);
    EXPECT_EQ(length.GetInDefaultInternalUnits(), 2); // 2.5 truncated
    EXPECT_EQ(area.GetInDefaultInternalUnits(), 2.0);

    // The argument is ignored: the stored value is taken as one in default units.
    V<double, 1> given(7.0);
    given.SetInDefaultInternalUnits(123.0);
    EXPECT_EQ(given, 14.0);
}
