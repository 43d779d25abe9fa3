#pragma once
/// @file
/// MColorHLSRGB, colours as hue, luminance and saturation.
#include "AfxTypes.h"
#include "KelBaseExport.h"

/// RGB to hue, luminance and saturation and back, on the system's scale: each of H, L and S runs
/// from 0 to 240 (hue 240 is hue 0 again), each of R, G and B from 0 to 255. The results are
/// those of the system's colour dialog functions (ColorRGBToHLS and ColorHLSToRGB) to the
/// unit, rounding included; a grey has saturation 0 and, as there, hue 160.
///
/// A round trip RGB -> HLS -> RGB is off by up to 5 units per channel, as the 0-240
/// scale is coarser than 0-255.
class KELBASE_API MColorHLSRGB {
public:
    /// The scales.
    enum {
        HLS_MAX = 240, ///< The top of hue, luminance and saturation.
        RGB_MAX = 255, ///< The top of red, green and blue.
        GREY_HUE = 160 ///< The hue of a grey.
    };

    /// Black.
    MColorHLSRGB() = default;
    /// The colour of a COLORREF (its top byte ignored).
    explicit MColorHLSRGB(COLORREF rgb) { SetRGB(rgb); }
    /// The colour of hue, luminance and saturation, as SetHLS takes them.
    MColorHLSRGB(WORD hue, WORD luminance, WORD saturation) { SetHLS(hue, luminance, saturation); }

    /// Sets the colour from a COLORREF (its top byte ignored).
    void SetRGB(COLORREF rgb);
    /// Values above 240 are taken as 240.
    void SetHLS(WORD hue, WORD luminance, WORD saturation);
    /// The colour as a COLORREF.
    COLORREF GetRGB() const;
    /// One component, 0 to 240.
    ///@{
    WORD GetHue() const { return m_hue; }
    WORD GetLuminance() const { return m_luminance; }
    WORD GetSaturation() const { return m_saturation; }
    ///@}

    /// The hue, luminance and saturation of a COLORREF (its top byte ignored).
    static void RGBToHLS(COLORREF rgb, WORD& hue, WORD& luminance, WORD& saturation);
    /// The COLORREF of hue, luminance and saturation. As with the system's function, values
    /// above 240 are not clamped: a channel beyond 255 keeps its low byte.
    static COLORREF HLSToRGB(WORD hue, WORD luminance, WORD saturation);

private:
    WORD m_hue = GREY_HUE;
    WORD m_luminance = 0;
    WORD m_saturation = 0;
};
