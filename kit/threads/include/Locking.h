#pragma once
// Recursive locks for objects (LocalLocking) and for a whole class (GlobalLocking).
#include <mutex>

#include "ThreadsExport.h"

namespace StdBase {

// A mutex that the owning thread may lock again; each lock() needs its own unlock().
class KELTHR_API recursive_mutex {
public:
    recursive_mutex();
    ~recursive_mutex();
    recursive_mutex(const recursive_mutex&) = delete;
    recursive_mutex& operator=(const recursive_mutex&) = delete;

    void lock();
    void unlock();
    bool try_lock();

private:
    std::recursive_mutex m_mutex;
};

// Gives each object its own recursive mutex, lockable through the object even when const.
// The mutex belongs to the object, not to its value: a copy gets a fresh, unlocked mutex and
// assignment leaves the target's mutex alone.
class KELTHR_API LocalLocking {
public:
    LocalLocking();
    LocalLocking(const LocalLocking& other);
    LocalLocking& operator=(const LocalLocking& other);
    ~LocalLocking();

    void Lock() const;
    void Unlock() const;

private:
    mutable recursive_mutex m_mutex;
};

// Holds the lock of a LocalLocking object for its lifetime.
class KELTHR_API LocalLock {
public:
    explicit LocalLock(const LocalLocking& object);
    ~LocalLock();
    LocalLock(const LocalLock&) = delete;
    LocalLock& operator=(const LocalLock&) = delete;

private:
    const LocalLocking& m_object;
};

// One recursive mutex shared by everything of class T (per module, as for any template static);
// derive T from it or call it by name. It has no state of its own.
template <class T> class GlobalLocking {
public:
    static void GlobalLock() { Mutex().lock(); }
    static void GlobalUnlock() { Mutex().unlock(); }

private:
    static recursive_mutex& Mutex() {
        static recursive_mutex mutex;
        return mutex;
    }
};

} // namespace StdBase
