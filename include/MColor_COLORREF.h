#pragma once
// A colour held as the system's COLORREF (0x00BBGGRR) together with an alpha channel, and
// converted both ways to the kit's Color. The top byte of a COLORREF carries palette flags, not
// colour: it is dropped on the way in, and a COLORREF made here never has one.
#include "AfxTypes.h"
#include "Color.h"
#include "KelBaseExport.h"

class KELBASE_API MColor_COLORREF {
public:
    // Opaque black, as Color's default.
    MColor_COLORREF() = default;
    explicit MColor_COLORREF(COLORREF colorRef, BYTE alpha = 255);
    MColor_COLORREF(BYTE red, BYTE green, BYTE blue, BYTE alpha = 255);
    explicit MColor_COLORREF(const KelSDK::Common::Color& color);

    COLORREF GetCOLORREF() const { return m_colorRef; }
    KelSDK::Common::Color GetColor() const;
    BYTE GetRed() const { return static_cast<BYTE>(m_colorRef); }
    BYTE GetGreen() const { return static_cast<BYTE>(m_colorRef >> 8); }
    BYTE GetBlue() const { return static_cast<BYTE>(m_colorRef >> 16); }
    BYTE GetAlpha() const { return m_alpha; }

    static COLORREF ToCOLORREF(const KelSDK::Common::Color& color);
    static KelSDK::Common::Color ToColor(COLORREF colorRef, BYTE alpha = 255);

    bool operator==(const MColor_COLORREF& other) const {
        return m_colorRef == other.m_colorRef && m_alpha == other.m_alpha;
    }
    bool operator!=(const MColor_COLORREF& other) const { return !(*this == other); }

private:
    COLORREF m_colorRef = 0;
    BYTE m_alpha = 255;
};
