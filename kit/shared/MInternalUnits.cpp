#include "MInternalUnits.h"

#include <algorithm>
#include <cmath>

namespace KelSDK::Common {

namespace {

bool IsPositiveFinite(double value) {
    return value > 0.0 && std::isfinite(value);
}

} // namespace

MInternalUnits::MInternalUnits() = default;

MInternalUnits& MInternalUnits::GetInstance() {
    static MInternalUnits* instance = new MInternalUnits;
    return *instance;
}

bool MInternalUnits::Set(double resolution) {
    std::lock_guard<std::recursive_mutex> lock(m_mutex);
    if (!CanChange() || !IsPositiveFinite(resolution) || m_notifying)
        return false;
    const double old = m_resolution.load();
    if (resolution == old)
        return true;
    m_resolution.store(resolution);
    // Cleared however the loop ends, so that an observer that throws does not lock Set out.
    struct Notifying {
        bool& flag;
        ~Notifying() { flag = false; }
    } notifying{m_notifying};
    m_notifying = true;
    m_end = m_observers.size();
    for (m_next = 0; m_next < m_end;) {
        MInternalUnitsObserver* observer = m_observers[m_next++];
        observer->_OnInternalUnitsChange(old, resolution, true);
    }
    return true;
}

void MInternalUnits::SetConversionFactor(double mmPerUnit) {
    if (IsPositiveFinite(mmPerUnit))
        m_conversionFactor.store(mmPerUnit);
}

void MInternalUnits::AddObserver(MInternalUnitsObserver* observer) {
    std::lock_guard<std::recursive_mutex> lock(m_mutex);
    if (observer != nullptr &&
        std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void MInternalUnits::RemoveObserver(MInternalUnitsObserver* observer) {
    std::lock_guard<std::recursive_mutex> lock(m_mutex);
    const auto found = std::find(m_observers.begin(), m_observers.end(), observer);
    if (found == m_observers.end())
        return;
    const size_t index = static_cast<size_t>(found - m_observers.begin());
    m_observers.erase(found);
    if (m_notifying) {
        // Keep the running notification on the same remaining observers.
        if (index < m_end)
            --m_end;
        if (index < m_next)
            --m_next;
    }
}

MInternalUnitsObserver::MInternalUnitsObserver() {
    MInternalUnits::GetInstance().AddObserver(this);
}

MInternalUnitsObserver::~MInternalUnitsObserver() {
    MInternalUnits::GetInstance().RemoveObserver(this);
}

} // namespace KelSDK::Common
