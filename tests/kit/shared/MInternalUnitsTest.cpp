#include "InternalUnitsFixture.h"

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using KelSDK::Common::MInternalUnits;
using KelSDK::Common::MInternalUnitsObserver;

namespace {

struct Change {
    double oldUnits;
    double newUnits;
    bool apply;
    bool operator==(const Change& other) const {
        return oldUnits == other.oldUnits && newUnits == other.newUnits && apply == other.apply;
    }
};

// Records every notification; an optional action runs inside it.
class Recorder : public MInternalUnitsObserver {
public:
    Recorder() = default;
    // Copies the registration state only, as derived values do.
    Recorder(const Recorder& other) : MInternalUnitsObserver(other) {}

    bool _OnInternalUnitsChange(const double& oldUnits, const double& newUnits,
                                bool apply) override {
        changes.push_back({oldUnits, newUnits, apply});
        if (action)
            action();
        return true;
    }

    std::vector<Change> changes;
    std::function<void()> action;
};

using Changes = std::vector<Change>;

MInternalUnits& Units() {
    return MInternalUnits::GetInstance();
}

} // namespace

TEST_F(InternalUnitsTest, ObserversHearExactChangesWhileTheyLive) {
    EXPECT_EQ(&Units(), &MInternalUnits::GetInstance());
    EXPECT_EQ(10000.0, Units().Get());
    Recorder first;
    auto second = std::make_unique<Recorder>();

    EXPECT_TRUE(Units().Set(20000.0));
    EXPECT_EQ(20000.0, Units().Get());
    EXPECT_TRUE(Units().Set(20000.0)); // no change, no notification
    second.reset();
    EXPECT_TRUE(Units().Set(2500.5));

    EXPECT_EQ((Changes{{10000.0, 20000.0, true}, {20000.0, 2500.5, true}}), first.changes);

    // A copy is not registered; destroying it must not unregister the original.
    {
        Recorder copy(first);
        EXPECT_TRUE(Units().Set(4000.0));
        EXPECT_TRUE(copy.changes.empty());
    }
    EXPECT_TRUE(Units().Set(8000.0));
    EXPECT_EQ(4u, first.changes.size());
    EXPECT_EQ((Change{4000.0, 8000.0, true}), first.changes.back());
}

TEST_F(InternalUnitsTest, RefusedChangesLeaveEverythingAlone) {
    Recorder observer;
    Units().SetCanChange(false);
    EXPECT_FALSE(Units().CanChange());
    EXPECT_FALSE(Units().Set(20000.0));
    Units().SetCanChange(true);
    EXPECT_TRUE(Units().CanChange());
    EXPECT_FALSE(Units().Set(0.0));
    EXPECT_FALSE(Units().Set(-5.0));
    EXPECT_FALSE(Units().Set(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(Units().Set(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(10000.0, Units().Get());
    EXPECT_TRUE(observer.changes.empty());
}

TEST_F(InternalUnitsTest, ObserversComingAndGoingDuringANotification) {
    auto victim = std::make_unique<Recorder>();
    Recorder killer;
    auto lateComer = std::unique_ptr<Recorder>();
    Recorder last;
    // killer runs after victim: removing an observer already called must not skip `last`.
    killer.action = [&] {
        victim.reset();
        if (!lateComer)
            lateComer = std::make_unique<Recorder>();
        EXPECT_FALSE(Units().Set(1.0)); // no nested changes
    };

    EXPECT_TRUE(Units().Set(5000.0));
    EXPECT_EQ(nullptr, victim);
    EXPECT_EQ(1u, killer.changes.size());
    EXPECT_EQ(1u, last.changes.size());
    ASSERT_NE(nullptr, lateComer);
    EXPECT_TRUE(lateComer->changes.empty()); // built in the new units already
    EXPECT_EQ(5000.0, Units().Get());

    // The late observer is registered for the next change.
    killer.action = nullptr;
    EXPECT_TRUE(Units().Set(6000.0));
    EXPECT_EQ((Changes{{5000.0, 6000.0, true}}), lateComer->changes);
}

TEST_F(InternalUnitsTest, RemovingAnObserverNotYetCalledSkipsIt) {
    Recorder remover;
    auto pending = std::make_unique<Recorder>();
    Recorder last;
    remover.action = [&] { pending.reset(); };
    EXPECT_TRUE(Units().Set(3000.0));
    EXPECT_EQ(1u, remover.changes.size());
    EXPECT_EQ(1u, last.changes.size());
}

TEST_F(InternalUnitsTest, ConversionFactorKeepsOnlySensibleValues) {
    EXPECT_EQ(1.0, Units().GetConversionFactor());
    Units().SetConversionFactor(25.4);
    EXPECT_EQ(25.4, Units().GetConversionFactor());
    Units().SetConversionFactor(0.0);
    Units().SetConversionFactor(-1.0);
    Units().SetConversionFactor(std::nan(""));
    EXPECT_EQ(25.4, Units().GetConversionFactor());
    EXPECT_EQ(10000.0, Units().Get()); // the factor does not touch the resolution
}
