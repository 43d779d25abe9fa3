#include "MGradientColoring.h"

#include <algorithm>
#include <cmath>

using KelSDK::Common::Color;

MGradientColoring::MGradientColoring()
    : m_stops{{0.0, Color(0, 0, 255)},
              {0.25, Color(0, 255, 255)},
              {0.5, Color(0, 255, 0)},
              {0.75, Color(255, 255, 0)},
              {1.0, Color(255, 0, 0)}} {}

MGradientColoring::MGradientColoring(double minimum, double maximum) : MGradientColoring() {
    SetRange(minimum, maximum);
}

bool MGradientColoring::SetRange(double minimum, double maximum) {
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || minimum > maximum)
        return false;
    m_minimum = minimum;
    m_maximum = maximum;
    return true;
}

void MGradientColoring::ClearStops() {
    m_stops.clear();
}

bool MGradientColoring::AddStop(double position, const Color& color) {
    if (!(position >= 0.0 && position <= 1.0))
        return false;
    const auto at = std::lower_bound(
        m_stops.begin(), m_stops.end(), position,
        [](const std::pair<double, Color>& stop, double p) { return stop.first < p; });
    if (at != m_stops.end() && at->first == position)
        at->second = color;
    else
        m_stops.insert(at, {position, color});
    return true;
}

namespace {

std::uint8_t Blend(std::uint8_t from, std::uint8_t to, double t) {
    return static_cast<std::uint8_t>(std::lround(from + (to - from) * t));
}

} // namespace

Color MGradientColoring::GetColor(double value) const {
    if (std::isnan(value) || m_stops.empty())
        return m_undefined;
    double t = m_maximum > m_minimum ? (value - m_minimum) / (m_maximum - m_minimum) : 0.5;
    t = std::clamp(t, 0.0, 1.0);
    if (m_bands) {
        const double band = std::min(std::floor(t * m_bands), m_bands - 1.0);
        t = (band + 0.5) / m_bands;
    }
    if (t <= m_stops.front().first)
        return m_stops.front().second;
    if (t >= m_stops.back().first)
        return m_stops.back().second;
    const auto upper = std::upper_bound(
        m_stops.begin(), m_stops.end(), t,
        [](double p, const std::pair<double, Color>& stop) { return p < stop.first; });
    const auto& [p0, c0] = *(upper - 1);
    const auto& [p1, c1] = *upper;
    const double f = (t - p0) / (p1 - p0);
    return Color(Blend(c0.GetRed(), c1.GetRed(), f), Blend(c0.GetGreen(), c1.GetGreen(), f),
                 Blend(c0.GetBlue(), c1.GetBlue(), f), Blend(c0.GetAlpha(), c1.GetAlpha(), f));
}
