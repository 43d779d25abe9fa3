#include "MColor_COLORREF.h"

using KelSDK::Common::Color;

MColor_COLORREF::MColor_COLORREF(COLORREF colorRef, BYTE alpha)
    : m_colorRef(colorRef & 0xFFFFFF), m_alpha(alpha) {}

MColor_COLORREF::MColor_COLORREF(BYTE red, BYTE green, BYTE blue, BYTE alpha)
    : m_colorRef(red | green << 8 | static_cast<COLORREF>(blue) << 16), m_alpha(alpha) {}

MColor_COLORREF::MColor_COLORREF(const Color& color)
    : m_colorRef(color.ToColorRef()), m_alpha(color.GetAlpha()) {}

Color MColor_COLORREF::GetColor() const {
    return ToColor(m_colorRef, m_alpha);
}

COLORREF MColor_COLORREF::ToCOLORREF(const Color& color) {
    return color.ToColorRef();
}

Color MColor_COLORREF::ToColor(COLORREF colorRef, BYTE alpha) {
    const Color opaque(static_cast<std::uint32_t>(colorRef));
    return Color(opaque.GetRed(), opaque.GetGreen(), opaque.GetBlue(), alpha);
}
