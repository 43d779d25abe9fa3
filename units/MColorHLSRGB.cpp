#include "MColorHLSRGB.h"

#include <algorithm>

namespace {

// Whole-number arithmetic throughout, rounding as the system does, so that results match it to
// the unit.
int ChannelOfHue(int hue, int low, int high) {
    if (hue > MColorHLSRGB::HLS_MAX)
        hue -= MColorHLSRGB::HLS_MAX;
    else if (hue < 0)
        hue += MColorHLSRGB::HLS_MAX;
    if (hue > 160)
        return low;
    if (hue > 120)
        hue = 160 - hue;
    else if (hue > 40)
        return high;
    return (hue * (high - low) + 20) / 40 + low;
}

// Values beyond the scale (from HLS values above 240) keep their low byte, as the system's
// RGB macro does.
BYTE ToRgbScale(int value) {
    return static_cast<BYTE>((value * MColorHLSRGB::RGB_MAX + 120) / MColorHLSRGB::HLS_MAX);
}

COLORREF Pack(BYTE red, BYTE green, BYTE blue) {
    return red | green << 8 | static_cast<COLORREF>(blue) << 16;
}

} // namespace

void MColorHLSRGB::RGBToHLS(COLORREF rgb, WORD& hue, WORD& luminance, WORD& saturation) {
    const int red = rgb & 0xFF, green = (rgb >> 8) & 0xFF, blue = (rgb >> 16) & 0xFF;
    const int high = std::max({red, green, blue}), low = std::min({red, green, blue});
    const int sum = high + low;
    const int l = (sum * HLS_MAX + RGB_MAX) / (2 * RGB_MAX);
    int h = GREY_HUE, s = 0;
    if (high != low) {
        const int delta = high - low;
        if (l <= HLS_MAX / 2)
            s = (sum / 2 + delta * HLS_MAX) / sum;
        else
            s = ((2 * RGB_MAX - sum) / 2 + delta * HLS_MAX) / (2 * RGB_MAX - sum);
        // Each channel's distance from the top, in sixths of the hue circle.
        const auto fromTop = [&](int channel) {
            return (delta / 2 + (high - channel) * (HLS_MAX / 6)) / delta;
        };
        if (red == high)
            h = fromTop(blue) - fromTop(green);
        else if (green == high)
            h = HLS_MAX / 3 + fromTop(red) - fromTop(blue);
        else
            h = 2 * HLS_MAX / 3 + fromTop(green) - fromTop(red);
        if (h < 0)
            h += HLS_MAX;
        else if (h > HLS_MAX)
            h -= HLS_MAX;
    }
    hue = static_cast<WORD>(h);
    luminance = static_cast<WORD>(l);
    saturation = static_cast<WORD>(s);
}

COLORREF MColorHLSRGB::HLSToRGB(WORD hue, WORD luminance, WORD saturation) {
    const int h = hue, l = luminance, s = saturation;
    if (s == 0) {
        const BYTE grey = static_cast<BYTE>(l * RGB_MAX / HLS_MAX);
        return Pack(grey, grey, grey);
    }
    const int high = l > HLS_MAX / 2 ? s + l - (s * l + HLS_MAX / 2) / HLS_MAX
                                     : ((s + HLS_MAX) * l + HLS_MAX / 2) / HLS_MAX;
    const int low = 2 * l - high;
    return Pack(ToRgbScale(ChannelOfHue(h + HLS_MAX / 3, low, high)),
                ToRgbScale(ChannelOfHue(h, low, high)),
                ToRgbScale(ChannelOfHue(h - HLS_MAX / 3, low, high)));
}

void MColorHLSRGB::SetRGB(COLORREF rgb) {
    RGBToHLS(rgb, m_hue, m_luminance, m_saturation);
}

void MColorHLSRGB::SetHLS(WORD hue, WORD luminance, WORD saturation) {
    m_hue = std::min<WORD>(hue, HLS_MAX);
    m_luminance = std::min<WORD>(luminance, HLS_MAX);
    m_saturation = std::min<WORD>(saturation, HLS_MAX);
}

COLORREF MColorHLSRGB::GetRGB() const {
    return HLSToRGB(m_hue, m_luminance, m_saturation);
}
