#include "MUserUnit.h"

#include <vector>

#include "InitOrder.h"
#include "KelResource.h"
#include "MInternalUnits.h"
#include "MUnit.h"
#include "StdBase.h"
#include "TextCopy.h"

using KelSDK::Common::MInternalUnits;
using KelSDK::Common::MUnit;

namespace {

struct UnitTraits {
    unsigned int nameId;
    unsigned int abbreviationId;
    const wchar_t* printFormat;
    double mmPerUnit;
};

const UnitTraits unitTraits[] = {
    {673, 672, L"%5.2g", 1.0},  // UNIT_MM
    {675, 674, L"%5.3g", 25.4}, // UNIT_INCH
};

} // namespace

MUserUnit MUserUnit::mg_user_unit KEL_INIT_USER_UNIT(MUserUnit::UNIT_MM);

// SetUnit loads the texts, format and factor of a valid unit whatever the previous one was.
MUserUnit::MUserUnit(UNIT_TYPE unit)
    : m_unit(UNIT_MM), m_printFormat(unitTraits[UNIT_MM].printFormat),
      m_mmPerUnit(unitTraits[UNIT_MM].mmPerUnit) {
    SetUnit(unit);
}

MUserUnit::~MUserUnit() = default;

MUserUnit& MUserUnit::GetInstance() {
    return mg_user_unit;
}

void MUserUnit::SetUnit(UNIT_TYPE unit) {
    const UNIT_TYPE old = m_unit;
    m_unit = unit;
    if (unit != UNIT_MM && unit != UNIT_INCH)
        return;
    const UnitTraits& traits = unitTraits[unit];
    KelResLoadStringEx(m_name, traits.nameId);
    KelResLoadStringEx(m_abbreviation, traits.abbreviationId);
    m_printFormat = traits.printFormat;
    m_mmPerUnit = traits.mmPerUnit;
    if (this == &mg_user_unit)
        MInternalUnits::GetInstance().SetConversionFactor(m_mmPerUnit);
    if (old != unit)
        _OnUserUnitChanged();
}

void MUserUnit::AddUserUnitListener(IUserUnitDependent* listener) {
    m_listeners.insert(listener);
}

void MUserUnit::RemoveUserUnitListener(IUserUnitDependent* listener) {
    m_listeners.erase(listener);
}

void MUserUnit::_OnUserUnitChanged() {
    // A snapshot, because a listener's notification may change the set under the loop.
    const std::vector<IUserUnitDependent*> listeners(m_listeners.begin(), m_listeners.end());
    for (IUserUnitDependent* listener : listeners) {
        if (m_listeners.count(listener) != 0)
            listener->OnUserUnitChanged();
    }
}

double MUserUnit::ConvertFromUIToMm(double value) const {
    return value * m_mmPerUnit;
}

double MUserUnit::ConvertFromMmToUI(double value) const {
    return value / m_mmPerUnit;
}

double MUserUnit::ConvertFromUIToMmSquare(double value) const {
    return m_mmPerUnit * value * m_mmPerUnit;
}

double MUserUnit::ConvertFromMmSquareToUI(double value) const {
    return value / m_mmPerUnit / m_mmPerUnit;
}

double MUserUnit::ConvertFromUIToMmCubed(double value) const {
    return m_mmPerUnit * value * m_mmPerUnit * m_mmPerUnit;
}

double MUserUnit::ConvertFromMmCubedToUI(double value) const {
    return value / m_mmPerUnit / m_mmPerUnit / m_mmPerUnit;
}

long MUserUnit::ConvertFromUIToStlUnits(double value) const {
    return MUnit::ConvertFromMmToStlUnits(value * m_mmPerUnit);
}

double MUserUnit::ConvertFromStlUnitsToUI(long value) const {
    return MUnit::_ConvertStlUnitsToMm(static_cast<double>(value)) / m_mmPerUnit;
}

double MUserUnit::_ConvertFromUIToStlUnits(double value) const {
    return MUnit::_ConvertMmToStlUnits(value * m_mmPerUnit);
}

double MUserUnit::_ConvertFromStlUnitsToUI(double value) const {
    return MUnit::_ConvertStlUnitsToMm(value) / m_mmPerUnit;
}

// An area or volume is converted one dimension at a time, each step through the length
// conversions.
double MUserUnit::ConvertFromUIToStlUnitsSquare(double value) const {
    return _ConvertFromUIToStlUnits(_ConvertFromUIToStlUnits(value));
}

double MUserUnit::ConvertFromStlUnitsSquareToUI(double value) const {
    return _ConvertFromStlUnitsToUI(_ConvertFromStlUnitsToUI(value));
}

double MUserUnit::ConvertFromUIToStlUnitsCubed(double value) const {
    return _ConvertFromUIToStlUnits(_ConvertFromUIToStlUnits(_ConvertFromUIToStlUnits(value)));
}

double MUserUnit::ConvertFromStlUnitsCubedToUI(double value) const {
    return _ConvertFromStlUnitsToUI(_ConvertFromStlUnitsToUI(_ConvertFromStlUnitsToUI(value)));
}

void MUserUnit::PrintMmInUI(wchar_t* buffer, size_t size, double mm, bool withUnit) const {
    _Print(buffer, size, ConvertFromMmToUI(mm), withUnit);
}

void MUserUnit::PrintStlUnitsInUI(wchar_t* buffer, size_t size, long stl, bool withUnit) const {
    _Print(buffer, size, ConvertFromStlUnitsToUI(stl), withUnit);
}

void MUserUnit::_Print(wchar_t* buffer, size_t size, double valueInUnit, bool withUnit) const {
    std::wstring text = StdBase::FormatString(m_printFormat, valueInUnit);
    if (withUnit)
        text += L" " + m_abbreviation;
    KelBase::CopyTruncated(buffer, size, text.c_str());
}

IUserUnitDependent::IUserUnitDependent() {
    MUserUnit::GetInstance().AddUserUnitListener(this);
}

IUserUnitDependent::IUserUnitDependent(const IUserUnitDependent&) {}

IUserUnitDependent& IUserUnitDependent::operator=(const IUserUnitDependent&) {
    return *this;
}

IUserUnitDependent::~IUserUnitDependent() {
    MUserUnit::GetInstance().RemoveUserUnitListener(this);
}
