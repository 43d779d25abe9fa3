#pragma once
/// @file
/// MColor_COLORREF, a system COLORREF with an alpha channel.
#include "AfxTypes.h"
#include "Color.h"
#include "KelBaseExport.h"

/// A colour held as the system's COLORREF (0x00BBGGRR) together with an alpha channel, and
/// converted both ways to the kit's Color. The top byte of a COLORREF carries palette flags, not
/// colour: it is dropped on the way in, and a COLORREF made here never has one.
class KELBASE_API MColor_COLORREF {
public:
    /// Opaque black, as Color's default.
    MColor_COLORREF() = default;
    /// A COLORREF (its top byte dropped) and an alpha.
    explicit MColor_COLORREF(COLORREF colorRef, BYTE alpha = 255);
    /// The channels; alpha 255 is opaque.
    MColor_COLORREF(BYTE red, BYTE green, BYTE blue, BYTE alpha = 255);
    /// The colour and alpha of a kit Color.
    explicit MColor_COLORREF(const KelSDK::Common::Color& color);

    /// The colour as a COLORREF, without palette flags.
    COLORREF GetCOLORREF() const { return m_colorRef; }
    /// The colour and alpha as a kit Color.
    KelSDK::Common::Color GetColor() const;
    /// One channel, 0 to 255.
    ///@{
    BYTE GetRed() const { return static_cast<BYTE>(m_colorRef); }
    BYTE GetGreen() const { return static_cast<BYTE>(m_colorRef >> 8); }
    BYTE GetBlue() const { return static_cast<BYTE>(m_colorRef >> 16); }
    BYTE GetAlpha() const { return m_alpha; }
    ///@}

    /// The COLORREF of a kit Color; its alpha is dropped.
    static COLORREF ToCOLORREF(const KelSDK::Common::Color& color);
    /// The kit Color of a COLORREF (its top byte dropped) with `alpha`.
    static KelSDK::Common::Color ToColor(COLORREF colorRef, BYTE alpha = 255);

    /// Equal when colour and alpha are.
    ///@{
    bool operator==(const MColor_COLORREF& other) const {
        return m_colorRef == other.m_colorRef && m_alpha == other.m_alpha;
    }
    bool operator!=(const MColor_COLORREF& other) const { return !(*this == other); }
    ///@}

private:
    COLORREF m_colorRef = 0;
    BYTE m_alpha = 255;
};
