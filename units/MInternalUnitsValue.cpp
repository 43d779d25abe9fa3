#include "MInternalUnitsValue.h"

#include <cmath>
#include <limits>

using KelSDK::Common::MInternalUnits;

IInternalUnitsObserver::IInternalUnitsObserver() = default;
IInternalUnitsObserver::IInternalUnitsObserver(const IInternalUnitsObserver&) = default;
IInternalUnitsObserver& IInternalUnitsObserver::operator=(const IInternalUnitsObserver&) = default;
IInternalUnitsObserver::~IInternalUnitsObserver() = default;

bool IInternalUnitsObserver::_OnInternalUnitsChange(const double&, const double&, bool) {
    return false;
}

double IInternalUnitsObserver::GetInternalUnits() {
    return MInternalUnits::GetInstance().Get();
}

bool IInternalUnitsObserver::SetInternalUnits(double units) {
    return MInternalUnits::GetInstance().Set(units);
}

bool IInternalUnitsObserver::IsInternalUnitsChangeAllowed() {
    return MInternalUnits::GetInstance().CanChange();
}

namespace {

// Truncation toward zero to a signed integer type; a value outside its range (or not a number)
// gives the lowest value, as the processor's truncating conversion does, where C++ would leave
// the result undefined.
template <class I> I Truncate(double value) {
    const double limit = -static_cast<double>(std::numeric_limits<I>::min()); // 2^31 or 2^63
    if (!(value > -limit - 1.0 && value < limit))
        return std::numeric_limits<I>::min();
    return static_cast<I>(value);
}

// A rescaled double stored back in T.
template <class T> T FromDouble(double value);
template <> double FromDouble<double>(double value) {
    return value;
}
template <> float FromDouble<float>(double value) {
    return static_cast<float>(value);
}
template <> int FromDouble<int>(double value) {
    return Truncate<int32_t>(value);
}
template <> long FromDouble<long>(double value) {
    return Truncate<int32_t>(value);
}
template <> unsigned int FromDouble<unsigned int>(double value) {
    return static_cast<uint32_t>(Truncate<int64_t>(value));
}
template <> unsigned long FromDouble<unsigned long>(double value) {
    return static_cast<uint32_t>(Truncate<int64_t>(value));
}
template <> short FromDouble<short>(double value) {
    return static_cast<int16_t>(Truncate<int32_t>(value));
}
template <> unsigned short FromDouble<unsigned short>(double value) {
    return static_cast<uint16_t>(Truncate<int32_t>(value));
}

// value x factor^N as factor x value x factor x ..., the order the results depend on.
template <class T, int N> T Scale(T value, double factor) {
    double scaled = factor * static_cast<double>(value);
    for (int i = 1; i < N; ++i)
        scaled *= factor;
    return FromDouble<T>(scaled);
}

const double defaultUnits = IInternalUnitsObserver::m_default_units;

} // namespace

template <class T, int N> MInternalUnitsValue<T, N>::MInternalUnitsValue() : m_value(0) {}

template <class T, int N>
MInternalUnitsValue<T, N>::MInternalUnitsValue(const MInternalUnitsValue& other)
    : IInternalUnitsObserver(other), m_value(other.m_value) {}

template <class T, int N> MInternalUnitsValue<T, N>::~MInternalUnitsValue() {
    m_value = 0;
}

template <class T, int N>
MInternalUnitsValue<T, N>& MInternalUnitsValue<T, N>::operator=(const MInternalUnitsValue& other) {
    m_value = other.m_value;
    return *this;
}

template <class T, int N> MInternalUnitsValue<T, N>::operator T() const {
    return m_value;
}

template <class T, int N> T MInternalUnitsValue<T, N>::GetInDefaultInternalUnits() const {
    return Scale<T, N>(m_value, defaultUnits / GetInternalUnits());
}

template <class T, int N> void MInternalUnitsValue<T, N>::SetInDefaultInternalUnits(T) {
    m_value = Scale<T, N>(m_value, GetInternalUnits() / defaultUnits);
}

template <class T, int N>
bool MInternalUnitsValue<T, N>::_OnInternalUnitsChange(const double& oldUnits,
                                                       const double& newUnits, bool apply) {
    if (apply)
        m_value = Scale<T, N>(m_value, newUnits / oldUnits);
    return true;
}

template class MInternalUnitsValue<double, 1>;
template class MInternalUnitsValue<double, 2>;
template class MInternalUnitsValue<double, 3>;
template class MInternalUnitsValue<float, 1>;
template class MInternalUnitsValue<float, 2>;
template class MInternalUnitsValue<float, 3>;
template class MInternalUnitsValue<int, 1>;
template class MInternalUnitsValue<long, 1>;
template class MInternalUnitsValue<unsigned int, 1>;
template class MInternalUnitsValue<unsigned long, 1>;
template class MInternalUnitsValue<short, 1>;
template class MInternalUnitsValue<unsigned short, 1>;
