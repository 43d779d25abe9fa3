#include "MUnit.h"

#include <cmath>
#include <limits>

#include "MInternalUnits.h"

namespace KelSDK::Common {

double MUnit::_ConvertStlUnitsToMm(double stlUnits) {
    return stlUnits / MInternalUnits::GetInstance().Get();
}

double MUnit::_ConvertMmToStlUnits(double mm) {
    return mm * MInternalUnits::GetInstance().Get();
}

int32_t MUnit::ConvertFromMmToStlUnits(double mm) {
    const double units = std::round(_ConvertMmToStlUnits(mm));
    if (std::isnan(units))
        return 0;
    if (units <= static_cast<double>(std::numeric_limits<int32_t>::min()))
        return std::numeric_limits<int32_t>::min();
    if (units >= static_cast<double>(std::numeric_limits<int32_t>::max()))
        return std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(units);
}

} // namespace KelSDK::Common
