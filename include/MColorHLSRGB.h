#pragma once
// RGB to hue, luminance and saturation and back, on the system's scale: each of H, L and S runs
// from 0 to 240 (hue 240 is hue 0 again), each of R, G and B from 0 to 255. The results are
// those of the system's colour dialog functions (ColorRGBToHLS and ColorHLSToRGB) to the
// unit, rounding included; a grey has saturation 0 and, as there, hue 160.
//
// A round trip RGB -> HLS -> RGB is off by up to 5 units per channel, as the 0-240
// scale is coarser than 0-255 (the tests bound it).
#include "AfxTypes.h"
#include "KelBaseExport.h"

class KELBASE_API MColorHLSRGB {
public:
    enum { HLS_MAX = 240, RGB_MAX = 255, GREY_HUE = 160 };

    MColorHLSRGB() = default;
    explicit MColorHLSRGB(COLORREF rgb) { SetRGB(rgb); }
    MColorHLSRGB(WORD hue, WORD luminance, WORD saturation) { SetHLS(hue, luminance, saturation); }

    void SetRGB(COLORREF rgb);
    // Values above 240 are taken as 240.
    void SetHLS(WORD hue, WORD luminance, WORD saturation);
    COLORREF GetRGB() const;
    WORD GetHue() const { return m_hue; }
    WORD GetLuminance() const { return m_luminance; }
    WORD GetSaturation() const { return m_saturation; }

    static void RGBToHLS(COLORREF rgb, WORD& hue, WORD& luminance, WORD& saturation);
    static COLORREF HLSToRGB(WORD hue, WORD luminance, WORD saturation);

private:
    WORD m_hue = GREY_HUE;
    WORD m_luminance = 0;
    WORD m_saturation = 0;
};
