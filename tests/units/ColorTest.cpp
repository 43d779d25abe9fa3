// Colour values both ways, HLS clamping, gradients through stops.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "MColorHLSRGB.h"
#include "MColor_COLORREF.h"
#include "MGradientColoring.h"

using KelSDK::Common::Color;

namespace {

TEST(MColor_COLORREF, BothWays) {
    const MColor_COLORREF fromRef(0x02336699, 128); // a palette flag in the top byte
    EXPECT_EQ(0x336699u, fromRef.GetCOLORREF());
    EXPECT_EQ(Color(0x99, 0x66, 0x33, 128), fromRef.GetColor());
    const MColor_COLORREF fromColor(Color(1, 2, 3, 4));
    EXPECT_EQ(0x030201u, fromColor.GetCOLORREF());
    EXPECT_EQ(MColor_COLORREF(1, 2, 3, 4), fromColor);
    EXPECT_NE(MColor_COLORREF(1, 2, 3), fromColor); // the alpha counts
    EXPECT_EQ(Color(1, 2, 3, 9), MColor_COLORREF::ToColor(0xFF030201, 9));
}

// Values beyond the scale are clamped. The conversions are compared with the system's own in
// MColorHLSRGBTestWin.cpp.
TEST(MColorHLSRGB, ClampsToTheScale) {
    const MColorHLSRGB clamped(999, 999, 999);
    EXPECT_EQ(240, clamped.GetHue());
    EXPECT_EQ(240, clamped.GetLuminance());
    EXPECT_EQ(240, clamped.GetSaturation());
    EXPECT_EQ(0xFFFFFFu, clamped.GetRGB());
}

TEST(MGradientColoring, StopsRangeAndBands) {
    MGradientColoring rainbow(10.0, 20.0);
    EXPECT_EQ(Color(255, 0, 0), rainbow.GetColor(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(Color(128, 255, 0), rainbow.GetColor(16.25)); // half way from green to yellow
    EXPECT_EQ(Color(128, 128, 128), rainbow.GetColor(std::nan("")));

    // Bad ranges and stops change nothing: blue (the high byte of a COLORREF) still starts at 10.
    EXPECT_FALSE(rainbow.SetRange(2.0, 1.0));
    EXPECT_EQ(10.0, rainbow.GetMinimum());
    EXPECT_FALSE(rainbow.AddStop(1.5, Color()));
    EXPECT_FALSE(rainbow.AddStop(std::nan(""), Color()));
    EXPECT_EQ(0xFF0000u, rainbow.GetCOLORREF(10.0));

    // Two stops out of order, one replaced, alpha interpolated; a one-value range.
    MGradientColoring two;
    two.ClearStops();
    two.SetUndefinedColor(Color(1, 1, 1));
    EXPECT_EQ(Color(1, 1, 1), two.GetColor(0.5));
    EXPECT_TRUE(two.AddStop(1.0, Color(200, 100, 0, 0)));
    EXPECT_TRUE(two.AddStop(0.0, Color(0, 0, 0, 255)));
    EXPECT_TRUE(two.AddStop(1.0, Color(200, 100, 50, 0)));
    EXPECT_EQ(2u, two.GetStopCount());
    EXPECT_EQ(Color(50, 25, 13, 191), two.GetColor(0.25));
    EXPECT_TRUE(two.SetRange(3.0, 3.0));
    EXPECT_EQ(Color(100, 50, 25, 128), two.GetColor(3.0));

    // Four bands: each takes the colour at its middle.
    EXPECT_TRUE(two.SetRange(0.0, 4.0));
    two.SetBands(4);
    EXPECT_EQ(Color(25, 13, 6, 223), two.GetColor(0.5));
    EXPECT_EQ(Color(175, 88, 44, 32), two.GetColor(4.0));
    EXPECT_NE(two.GetColor(0.99), two.GetColor(1.01));
}

} // namespace
