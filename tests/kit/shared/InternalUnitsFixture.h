#pragma once
// Leaves the process-wide internal units as the tests found them.
#include <gtest/gtest.h>

#include "MInternalUnits.h"

class InternalUnitsTest : public ::testing::Test {
protected:
    void TearDown() override {
        auto& units = KelSDK::Common::MInternalUnits::GetInstance();
        units.SetCanChange(true);
        units.Set(KelSDK::Common::MInternalUnits::DefaultResolution);
        units.SetConversionFactor(1.0);
    }
};
