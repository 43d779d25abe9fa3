#include "Locking.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <type_traits>
#include <vector>

using namespace StdBase;
using namespace std::chrono_literals;

namespace {

// Takes and releases a lock on another thread; the future is ready once it got the lock.
std::future<void> LockElsewhere(std::function<void()> lock, std::function<void()> unlock) {
    return std::async(std::launch::async, [lock, unlock] {
        lock();
        unlock();
    });
}

bool Blocked(std::future<void>& attempt) {
    return attempt.wait_for(100ms) == std::future_status::timeout;
}

bool Finishes(std::future<void>& attempt) {
    return attempt.wait_for(10s) == std::future_status::ready;
}

// Several threads increment a plain counter under the lock with a yield between read and
// write, so any overlap loses increments; a second counter sees overlapping sections directly.
using Section = std::function<void()>;
void ExpectMutualExclusion(const std::function<void(const Section&)>& underLock) {
    constexpr int threads = 4;
    constexpr int rounds = 20000;
    long counter = 0;
    std::atomic<int> inside{0};
    std::atomic<int> overlaps{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([&] {
            for (int i = 0; i < rounds; ++i) {
                underLock([&] {
                    if (inside.fetch_add(1) != 0)
                        ++overlaps;
                    const long seen = counter;
                    if (i % 64 == 0)
                        std::this_thread::yield();
                    counter = seen + 1;
                    inside.fetch_sub(1);
                });
            }
        });
    }
    for (auto& worker : workers)
        worker.join();
    EXPECT_EQ(0, overlaps.load());
    EXPECT_EQ(static_cast<long>(threads) * rounds, counter);
}

struct First {};
struct Second {};

} // namespace

TEST(RecursiveMutex, OwnerRelocksAndOthersWaitForTheLastUnlock) {
    recursive_mutex mutex;
    mutex.lock();
    EXPECT_TRUE(mutex.try_lock()); // recursion by the owner
    mutex.lock();
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mutex.try_lock(); }).get());
    mutex.unlock();
    mutex.unlock();
    EXPECT_FALSE(std::async(std::launch::async, [&] { return mutex.try_lock(); }).get());
    mutex.unlock();
    auto other = std::async(std::launch::async, [&] {
        const bool got = mutex.try_lock();
        if (got)
            mutex.unlock();
        return got;
    });
    EXPECT_TRUE(other.get());
}

TEST(RecursiveMutex, ExcludesOtherThreads) {
    recursive_mutex mutex;
    ExpectMutualExclusion([&](const Section& body) {
        mutex.lock();
        body();
        mutex.unlock();
    });
}

TEST(LocalLocking, GuardsAreRecursiveAndReleaseOnScopeExit) {
    const LocalLocking object;
    std::future<void> attempt;
    {
        LocalLock outer(object);
        {
            LocalLock inner(object);
            object.Lock();
            object.Unlock();
            attempt = LockElsewhere([&] { object.Lock(); }, [&] { object.Unlock(); });
        }
        EXPECT_TRUE(Blocked(attempt)); // the outer guard still holds the lock
    }
    EXPECT_TRUE(Finishes(attempt));
}

TEST(LocalLocking, ExcludesOtherThreads) {
    const LocalLocking object;
    ExpectMutualExclusion([&](const Section& body) {
        LocalLock guard(object);
        body();
    });
}

TEST(LocalLocking, CopiesAndAssignmentsKeepTheirOwnMutex) {
    LocalLocking original;
    original.Lock();
    LocalLocking copy(original);
    auto onCopy = LockElsewhere([&] { copy.Lock(); }, [&] { copy.Unlock(); });
    EXPECT_TRUE(Finishes(onCopy));

    LocalLocking target;
    target = original; // a held source lock does not travel
    auto onTarget = LockElsewhere([&] { target.Lock(); }, [&] { target.Unlock(); });
    EXPECT_TRUE(Finishes(onTarget));

    target.Lock();
    original = target; // nor does the target's lock state change
    auto onOriginal = LockElsewhere([&] { original.Lock(); }, [&] { original.Unlock(); });
    EXPECT_TRUE(Blocked(onOriginal));
    original.Unlock();
    EXPECT_TRUE(Finishes(onOriginal));
    target.Unlock();
}

TEST(GlobalLocking, OneRecursiveMutexPerClass) {
    static_assert(std::is_empty<GlobalLocking<First>>::value, "no state of its own");
    ExpectMutualExclusion([](const Section& body) {
        GlobalLocking<First>::GlobalLock();
        body();
        GlobalLocking<First>::GlobalUnlock();
    });

    GlobalLocking<First>::GlobalLock();
    GlobalLocking<First>::GlobalLock();
    auto other = LockElsewhere([] { GlobalLocking<Second>::GlobalLock(); },
                               [] { GlobalLocking<Second>::GlobalUnlock(); });
    EXPECT_TRUE(Finishes(other));
    auto same = LockElsewhere([] { GlobalLocking<First>::GlobalLock(); },
                              [] { GlobalLocking<First>::GlobalUnlock(); });
    GlobalLocking<First>::GlobalUnlock();
    EXPECT_TRUE(Blocked(same));
    GlobalLocking<First>::GlobalUnlock();
    EXPECT_TRUE(Finishes(same));
}
