#pragma once
/// @file
/// Millimetres to the kit's integer mesh units (STL units) and back.
#include <cstdint>

#include "SharedExport.h"

namespace KelSDK::Common {

/// Millimetres to the kit's integer mesh units (STL units) and back.
///
/// The current internal resolution (MInternalUnits) is the number of STL units per
/// millimetre: at the default 10000 one unit is 0.1 micrometre and a signed 32-bit coordinate
/// reaches about 214 metres. Raising the resolution makes the units finer, so stored values
/// grow with it, as the observers of resolution changes expect.
class KELSHR_API MUnit {
public:
    /// `stlUnits` in millimetres at the current resolution.
    static double _ConvertStlUnitsToMm(double stlUnits);
    /// `mm` in STL units at the current resolution, unrounded.
    static double _ConvertMmToStlUnits(double mm);
    /// `mm` in STL units at the current resolution, rounded to the nearest unit (halves away from
    /// zero) and clamped to the 32-bit range; a value that is not a number gives 0.
    static int32_t ConvertFromMmToStlUnits(double mm);
};

} // namespace KelSDK::Common
