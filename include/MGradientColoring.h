#pragma once
/// @file
/// MGradientColoring, values of a range mapped to colours.
#include <cstddef>
#include <utility>
#include <vector>

#include "AfxTypes.h"
#include "Color.h"
#include "KelBaseExport.h"

/// A value in a range mapped to a colour through colour stops, for colouring a mesh by a
/// measure (wall thickness, distance, curvature) and drawing its legend.
///
/// Stops sit at positions 0 to 1 across the range [minimum, maximum]; between two stops the
/// colour (alpha included) is interpolated linearly in RGB and rounded to the nearest unit.
/// Values below the range take the first stop's colour, values above it the last one's; a range
/// of one value maps that value to the middle of the stops. A value that is not a number, or
/// any value while there are no stops, takes the undefined colour (opaque middle grey unless
/// set). With bands set, the range is cut into that many equal bands, each coloured as at its
/// middle, as a stepped legend shows it.
///
/// The default object maps [0, 1] through blue, cyan, green, yellow and red at 0, 1/4, 1/2, 3/4
/// and 1, the usual colouring of a measure from low to high.
class KELBASE_API MGradientColoring {
public:
    /// The default colouring of [0, 1].
    MGradientColoring();
    /// The default stops over [minimum, maximum]; an invalid range (see SetRange) stays [0, 1].
    MGradientColoring(double minimum, double maximum);

    /// False (and nothing changes) unless both are finite and minimum <= maximum.
    bool SetRange(double minimum, double maximum);
    /// The ends of the range.
    ///@{
    double GetMinimum() const { return m_minimum; }
    double GetMaximum() const { return m_maximum; }
    ///@}

    /// Removes every stop: every value then takes the undefined colour.
    void ClearStops();
    /// False (and nothing changes) for a position outside [0, 1] or not a number. A stop at the
    /// position of another replaces it.
    bool AddStop(double position, const KelSDK::Common::Color& color);
    /// The number of stops.
    std::size_t GetStopCount() const { return m_stops.size(); }

    /// The number of equal bands the range is cut into; 0 (the default) for a continuous
    /// gradient.
    ///@{
    void SetBands(unsigned bands) { m_bands = bands; }
    unsigned GetBands() const { return m_bands; }
    ///@}

    /// The colour of values that are not a number, and of every value while there are no stops.
    ///@{
    void SetUndefinedColor(const KelSDK::Common::Color& color) { m_undefined = color; }
    const KelSDK::Common::Color& GetUndefinedColor() const { return m_undefined; }
    ///@}

    /// The colour of `value`.
    KelSDK::Common::Color GetColor(double value) const;
    /// The colour of `value` as a COLORREF, without its alpha.
    COLORREF GetCOLORREF(double value) const { return GetColor(value).ToColorRef(); }

private:
    double m_minimum = 0.0;
    double m_maximum = 1.0;
    unsigned m_bands = 0;
    std::vector<std::pair<double, KelSDK::Common::Color>> m_stops; ///< sorted by position
    KelSDK::Common::Color m_undefined{128, 128, 128};
};
