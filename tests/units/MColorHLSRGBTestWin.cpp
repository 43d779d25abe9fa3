// MColorHLSRGB against the system's own conversions (shlwapi) over a grid of every fourth RGB
// value, every HLS value on a 3-step grid and random samples.
#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <random>

#include "MColorHLSRGB.h"

namespace {

TEST(MColorHLSRGB, EqualsTheSystem) {
    int mismatches = 0;
    for (int r = 0; r < 256; r += 4)
        for (int g = 0; g < 256; g += 4)
            for (int b = 0; b < 256; b += 4) {
                const COLORREF rgb = RGB(r, g, b);
                WORD h, l, s, sh, sl, ss;
                MColorHLSRGB::RGBToHLS(rgb, h, l, s);
                ColorRGBToHLS(rgb, &sh, &sl, &ss);
                if ((h != sh || l != sl || s != ss) && ++mismatches <= 10)
                    ADD_FAILURE() << "RGB " << r << " " << g << " " << b << ": " << h << " " << l
                                  << " " << s << ", system " << sh << " " << sl << " " << ss;
            }
    std::mt19937 random(240);
    for (int i = 0; i < 100000 + 81 * 81 * 81; ++i) {
        const int grid = i - 100000;
        const WORD h = static_cast<WORD>(grid < 0 ? random() % 241 : grid % 81 * 3);
        const WORD l = static_cast<WORD>(grid < 0 ? random() % 241 : grid / 81 % 81 * 3);
        const WORD s = static_cast<WORD>(grid < 0 ? random() % 241 : grid / 6561 * 3);
        const COLORREF ours = MColorHLSRGB::HLSToRGB(h, l, s), system = ColorHLSToRGB(h, l, s);
        if (ours != system && ++mismatches <= 20)
            ADD_FAILURE() << "HLS " << h << " " << l << " " << s << ": " << std::hex << ours
                          << ", system " << system;
    }
    EXPECT_EQ(0, mismatches);
}

} // namespace
