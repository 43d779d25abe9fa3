#include "Locking.h"

namespace StdBase {

recursive_mutex::recursive_mutex() = default;
recursive_mutex::~recursive_mutex() = default;

void recursive_mutex::lock() {
    m_mutex.lock();
}
void recursive_mutex::unlock() {
    m_mutex.unlock();
}
bool recursive_mutex::try_lock() {
    return m_mutex.try_lock();
}

LocalLocking::LocalLocking() = default;
LocalLocking::LocalLocking(const LocalLocking&) {}
LocalLocking& LocalLocking::operator=(const LocalLocking&) {
    return *this;
}
LocalLocking::~LocalLocking() = default;

void LocalLocking::Lock() const {
    m_mutex.lock();
}
void LocalLocking::Unlock() const {
    m_mutex.unlock();
}

LocalLock::LocalLock(const LocalLocking& object) : m_object(object) {
    m_object.Lock();
}
LocalLock::~LocalLock() {
    m_object.Unlock();
}

} // namespace StdBase
