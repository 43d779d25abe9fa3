#pragma once
/// @file
/// The process-wide resolution of the kit's internal length units and the objects that follow
/// its changes.
#include <atomic>
#include <mutex>
#include <vector>

#include "SharedExport.h"

namespace KelSDK::Common {

class MInternalUnitsObserver;

/// The process-wide resolution of internal lengths: the number of internal (STL) units per
/// millimetre; see MUnit.
class KELSHR_API MInternalUnits {
public:
    /// The resolution at start-up: one unit is 0.1 micrometre.
    static constexpr double DefaultResolution = 10000.0;

    /// The one instance; it is never destroyed, so observers may unregister at any time.
    static MInternalUnits& GetInstance();

    /// The current resolution in units per millimetre.
    double Get() const { return m_resolution.load(); }

    /// Changes the resolution and tells every registered observer (old, new, apply = true),
    /// in registration order. Refused (false, nothing changes) while changes are locked, for
    /// a value that is not a positive finite number, and from inside a notification. Setting
    /// the current value succeeds without notifying. The observers' results are not used: a
    /// change, once made, is never undone.
    bool Set(double resolution);

    /// Whether Set may change the resolution. Changes are allowed until locked, e.g. while data
    /// in internal units cannot be rescaled.
    ///@{
    bool CanChange() const { return m_canChange.load(); }
    void SetCanChange(bool canChange) { m_canChange.store(canChange); }
    ///@}

    /// Millimetres per user-interface unit (1.0 or 25.4), kept for whoever shows internal
    /// values to the user; it does not enter the millimetre conversions. Values that are not
    /// positive and finite are ignored.
    ///@{
    void SetConversionFactor(double mmPerUnit);
    double GetConversionFactor() const { return m_conversionFactor.load(); }
    ///@}

    /// Registers or unregisters an observer of resolution changes; used by
    /// MInternalUnitsObserver's constructor and destructor. Adding twice or removing an unknown
    /// observer changes nothing. An observer added during a notification is not told about
    /// that change; one removed during it is no longer called.
    ///@{
    void AddObserver(MInternalUnitsObserver* observer);
    void RemoveObserver(MInternalUnitsObserver* observer);
    ///@}

private:
    MInternalUnits();

    std::atomic<double> m_resolution{DefaultResolution};
    std::atomic<double> m_conversionFactor{1.0};
    std::atomic<bool> m_canChange{true};

    // Recursive: observers add and remove observers from within their notification.
    mutable std::recursive_mutex m_mutex;
    std::vector<MInternalUnitsObserver*> m_observers;
    bool m_notifying = false;
    size_t m_next = 0; ///< while notifying: the next observer to call
    size_t m_end = 0;  ///< while notifying: one past the last observer to call
};

/// Registers itself for resolution changes while it lives. A copy is not registered (its
/// destructor's unregistration is then harmless); assignment leaves the registration alone.
class KELSHR_API MInternalUnitsObserver {
public:
    /// Unregisters the observer.
    virtual ~MInternalUnitsObserver();

    /// Called with the old and the new resolution; `apply` is true when the change is made.
    /// The result is not used.
    virtual bool _OnInternalUnitsChange(const double& oldUnits, const double& newUnits,
                                        bool apply) = 0;

protected:
    /// Registers the observer with MInternalUnits::GetInstance().
    MInternalUnitsObserver();
    /// A copy, not registered.
    MInternalUnitsObserver(const MInternalUnitsObserver&) = default;
    /// Leaves the registration alone.
    MInternalUnitsObserver& operator=(const MInternalUnitsObserver&) = default;
};

} // namespace KelSDK::Common
