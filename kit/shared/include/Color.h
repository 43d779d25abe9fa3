#pragma once
/// @file
/// An RGB colour with an alpha channel.
#include <cstdint>

namespace KelSDK::Common {

/// An RGB colour with an alpha channel, one byte per channel, convertible to and from the
/// platform's COLORREF layout 0x00BBGGRR.
class Color {
public:
    /// Opaque black.
    constexpr Color() = default;
    /// The colour of the given channels (255: opaque).
    constexpr Color(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha = 255)
        : m_red(red), m_green(green), m_blue(blue), m_alpha(alpha) {}
    /// The colour of a COLORREF 0x00BBGGRR. The top byte of a COLORREF holds palette flags, not
    /// alpha: the colour is opaque.
    constexpr explicit Color(uint32_t colorRef)
        : m_red(static_cast<uint8_t>(colorRef)), m_green(static_cast<uint8_t>(colorRef >> 8)),
          m_blue(static_cast<uint8_t>(colorRef >> 16)) {}

    /// The red channel.
    constexpr uint8_t GetRed() const { return m_red; }
    /// The green channel.
    constexpr uint8_t GetGreen() const { return m_green; }
    /// The blue channel.
    constexpr uint8_t GetBlue() const { return m_blue; }
    /// The alpha channel; 255 is opaque.
    constexpr uint8_t GetAlpha() const { return m_alpha; }

    /// The colour as a COLORREF 0x00BBGGRR; the alpha channel has no place in it.
    constexpr uint32_t ToColorRef() const {
        return static_cast<uint32_t>(m_red) | static_cast<uint32_t>(m_green) << 8 |
               static_cast<uint32_t>(m_blue) << 16;
    }

    /// True when all four channels are equal.
    constexpr bool operator==(const Color& other) const {
        return m_red == other.m_red && m_green == other.m_green && m_blue == other.m_blue &&
               m_alpha == other.m_alpha;
    }
    /// True when any channel differs.
    constexpr bool operator!=(const Color& other) const { return !(*this == other); }

private:
    uint8_t m_red = 0;
    uint8_t m_green = 0;
    uint8_t m_blue = 0;
    uint8_t m_alpha = 255;
};

} // namespace KelSDK::Common
