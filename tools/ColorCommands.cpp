// color hls|rgb: colours between red, green and blue and the system's hue, luminance and
// saturation (0 to 240 each), through the library's MColorHLSRGB.
#include <cwchar>
#include <optional>

#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

// A whole decimal number from 0 to `most`, nothing after it.
std::optional<unsigned> ParseChannel(const std::wstring& text, unsigned most) {
    if (text.empty() || text.size() > 3 ||
        text.find_first_not_of(L"0123456789") != std::wstring::npos)
        return std::nullopt;
    const unsigned long value = std::wcstoul(text.c_str(), nullptr, 10);
    if (value > most)
        return std::nullopt;
    return static_cast<unsigned>(value);
}

int Color(const Arguments& arguments) {
    if (arguments.size() != 4 || (arguments[0] != L"hls" && arguments[0] != L"rgb"))
        return UsageError(L"color", L"use color hls R G B or color rgb H L S");
    const bool toHls = arguments[0] == L"hls";
    const unsigned most = toHls ? MColorHLSRGB::RGB_MAX : MColorHLSRGB::HLS_MAX;
    unsigned values[3];
    for (int i = 0; i < 3; ++i) {
        const std::optional<unsigned> value = ParseChannel(arguments[i + 1], most);
        if (!value)
            return UsageError(L"color", L"not a whole number from 0 to " + std::to_wstring(most) +
                                            L": " + arguments[i + 1]);
        values[i] = *value;
    }
    if (toHls) {
        WORD hue = 0, luminance = 0, saturation = 0;
        MColorHLSRGB::RGBToHLS(RGB(values[0], values[1], values[2]), hue, luminance, saturation);
        Print(StdBase::FormatString(L"%u %u %u\n", hue, luminance, saturation));
    } else {
        const COLORREF rgb =
            MColorHLSRGB::HLSToRGB(static_cast<WORD>(values[0]), static_cast<WORD>(values[1]),
                                   static_cast<WORD>(values[2]));
        Print(StdBase::FormatString(L"%u %u %u #%02X%02X%02X\n", GetRValue(rgb), GetGValue(rgb),
                                    GetBValue(rgb), GetRValue(rgb), GetGValue(rgb),
                                    GetBValue(rgb)));
    }
    return Success;
}

} // namespace

KELTOOL_COMMAND(color, L"color", L"color hls R G B | color rgb H L S",
                L"  hls R G B   prints hue, luminance and saturation (each 0 to 240, as the\n"
                L"              system's colour dialog has them) of red, green and blue (0 to\n"
                L"              255).\n"
                L"  rgb H L S   prints red, green and blue of a hue, luminance and saturation,\n"
                L"              and the colour as #RRGGBB.\n",
                Color);

} // namespace Keltool
