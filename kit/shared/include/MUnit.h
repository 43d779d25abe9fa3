#pragma once
// Millimetres to the kit's integer mesh units (STL units) and back. The current internal
// resolution (MInternalUnits) is the number of STL units per millimetre: at the default
// 10000 one unit is 0.1 micrometre and a signed 32-bit coordinate reaches about 214 metres.
// Raising the resolution makes the units finer, so stored values grow with it, as the
// observers of resolution changes expect.
#include <cstdint>

#include "SharedExport.h"

namespace KelSDK::Common {

class KELSHR_API MUnit {
public:
    static double _ConvertStlUnitsToMm(double stlUnits);
    static double _ConvertMmToStlUnits(double mm);
    // Rounded to the nearest unit (halves away from zero) and clamped to the 32-bit range;
    // a value that is not a number gives 0.
    static int32_t ConvertFromMmToStlUnits(double mm);
};

} // namespace KelSDK::Common
