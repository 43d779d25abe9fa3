#pragma once
/// @file
/// Recursive locks for objects (LocalLocking) and for a whole class (GlobalLocking).
#include <mutex>

#include "ThreadsExport.h"

/// The kit's basic services: locking, text conversion and formatting.
namespace StdBase {

/// A mutex that the owning thread may lock again; each lock() needs its own unlock().
class KELTHR_API recursive_mutex {
public:
    /// An unlocked mutex.
    recursive_mutex();
    ~recursive_mutex();
    recursive_mutex(const recursive_mutex&) = delete;
    recursive_mutex& operator=(const recursive_mutex&) = delete;

    /// Waits until the calling thread holds the mutex.
    void lock();
    /// Releases one lock() of the calling thread, which must hold the mutex.
    void unlock();
    /// Takes the mutex if that is possible without waiting; true when taken.
    bool try_lock();

private:
    std::recursive_mutex m_mutex;
};

/// Gives each object its own recursive mutex, lockable through the object even when const.
/// The mutex belongs to the object, not to its value: a copy gets a fresh, unlocked mutex and
/// assignment leaves the target's mutex alone.
class KELTHR_API LocalLocking {
public:
    /// An object with an unlocked mutex.
    LocalLocking();
    /// A copy with a fresh, unlocked mutex.
    LocalLocking(const LocalLocking& other);
    /// Leaves this object's mutex alone.
    LocalLocking& operator=(const LocalLocking& other);
    ~LocalLocking();

    /// Waits until the calling thread holds the object's mutex.
    void Lock() const;
    /// Releases one Lock() of the calling thread.
    void Unlock() const;

private:
    mutable recursive_mutex m_mutex;
};

/// Holds the lock of a LocalLocking object for its lifetime.
class KELTHR_API LocalLock {
public:
    /// Locks `object`, waiting as needed.
    explicit LocalLock(const LocalLocking& object);
    /// Unlocks the object.
    ~LocalLock();
    LocalLock(const LocalLock&) = delete;
    LocalLock& operator=(const LocalLock&) = delete;

private:
    const LocalLocking& m_object;
};

/// One recursive mutex shared by everything of class T (per module, as for any template static);
/// derive T from it or call it by name. It has no state of its own.
template <class T> class GlobalLocking {
public:
    /// Waits until the calling thread holds the class's mutex.
    static void GlobalLock() { Mutex().lock(); }
    /// Releases one GlobalLock() of the calling thread.
    static void GlobalUnlock() { Mutex().unlock(); }

private:
    static recursive_mutex& Mutex() {
        static recursive_mutex mutex;
        return mutex;
    }
};

} // namespace StdBase
