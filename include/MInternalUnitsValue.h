#pragma once
/// @file
/// Values kept in the kit's internal units (MInternalUnits, STL units per millimetre) that
/// follow changes of the internal resolution, and the base that lets an object hear such
/// changes.
#include <cstdint>

#include "KelBaseExport.h"
#include "MInternalUnits.h"

/// The base of objects that hear of changes of the internal resolution while they live.
class KELBASE_API IInternalUnitsObserver : public KelSDK::Common::MInternalUnitsObserver {
public:
    /// The default resolution.
    static const int32_t m_default_units = 10000;

    /// Unregisters the observer.
    ~IInternalUnitsObserver() override;

    /// Does nothing and returns false.
    bool _OnInternalUnitsChange(const double& oldUnits, const double& newUnits,
                                bool apply) override;

    /// The current resolution.
    static double GetInternalUnits();
    /// MInternalUnits::Set: rescales every registered value; false when the change is refused.
    static bool SetInternalUnits(double units);
    /// MInternalUnits::CanChange: whether SetInternalUnits may change the resolution.
    static bool IsInternalUnitsChangeAllowed();

protected:
    /// Registers with MInternalUnits.
    IInternalUnitsObserver();
    /// A copy, not registered.
    IInternalUnitsObserver(const IInternalUnitsObserver&);
    /// Leaves the registration alone.
    IInternalUnitsObserver& operator=(const IInternalUnitsObserver&);
};

/// A value of type T and dimension N (1 length, 2 area, 3 volume) in the current internal units.
/// A rescale is computed in double and converted back to T the way the platform's compiler
/// converts: float is rounded; int and long are truncated toward zero to 32 bits; unsigned int
/// and unsigned long are truncated through a signed 64-bit integer and keep its low 32 bits;
/// short and unsigned short are truncated to 32 bits and keep the low 16. A result outside the
/// 32- or 64-bit range becomes that range's "integer indefinite" (its lowest value), as the
/// processor's conversion gives. Integers thus lose a little with each change: 3 halved and
/// doubled again is 2.
/// Instantiated and exported for double and float with N = 1, 2, 3, and for int, long,
/// unsigned int, unsigned long, short and unsigned short with N = 1.
template <class T, int N> class KELBASE_API MInternalUnitsValue : public IInternalUnitsObserver {
public:
    /// 0, registered for resolution changes.
    MInternalUnitsValue();
    /// Copies the value only: the copy is not registered, so later changes leave it as it is.
    MInternalUnitsValue(const MInternalUnitsValue& other);
    /// Sets the value to 0 before unregistering.
    ~MInternalUnitsValue() override;
    /// Copies the value only.
    MInternalUnitsValue& operator=(const MInternalUnitsValue& other);

    /// A value given in the current internal units, registered. Inline, so the exported members
    /// stay those above.
    explicit MInternalUnitsValue(T value) : MInternalUnitsValue() { m_value = value; }
    /// Sets the value, given in the current internal units.
    MInternalUnitsValue& operator=(T value) {
        m_value = value;
        return *this;
    }

    /// The value in the current internal units.
    operator T() const;

    /// The value in the default resolution: value x (10000 / r)^N.
    T GetInDefaultInternalUnits() const;
    /// Takes the stored value as one in the default resolution and converts it to the current
    /// one: value x (r / 10000)^N. The argument is not used: to set a value given in default
    /// units, assign it first and then call this.
    void SetInDefaultInternalUnits(T unused);

    /// With apply: value x (newUnits / oldUnits)^N. Always true; without apply nothing changes.
    bool _OnInternalUnitsChange(const double& oldUnits, const double& newUnits,
                                bool apply) override;

private:
    T m_value;
};

extern template class MInternalUnitsValue<double, 1>;
extern template class MInternalUnitsValue<double, 2>;
extern template class MInternalUnitsValue<double, 3>;
extern template class MInternalUnitsValue<float, 1>;
extern template class MInternalUnitsValue<float, 2>;
extern template class MInternalUnitsValue<float, 3>;
extern template class MInternalUnitsValue<int, 1>;
extern template class MInternalUnitsValue<long, 1>;
extern template class MInternalUnitsValue<unsigned int, 1>;
extern template class MInternalUnitsValue<unsigned long, 1>;
extern template class MInternalUnitsValue<short, 1>;
extern template class MInternalUnitsValue<unsigned short, 1>;
