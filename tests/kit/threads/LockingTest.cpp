#include "Locking.h"

#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace StdBase;
using namespace std::chrono_literals;

namespace {

template <class F> std::future<void> Elsewhere(F work) {
    return std::async(std::launch::async, work);
}

// Whether another thread's attempt got through within the time.
bool Done(std::future<void>& attempt, std::chrono::milliseconds time) {
    return attempt.wait_for(time) == std::future_status::ready;
}

// Threads increment a plain counter under the lock, yielding between read and write so that
// any overlap loses increments; `inside` sees overlapping sections directly.
template <class Lock, class Unlock> void ExpectMutualExclusion(Lock lock, Unlock unlock) {
    long counter = 0;
    std::atomic<int> inside{0};
    std::atomic<int> overlaps{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < 4; ++t)
        workers.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                lock();
                overlaps += inside++ != 0;
                const long seen = counter;
                if (i % 64 == 0)
                    std::this_thread::yield();
                counter = seen + 1;
                --inside;
                unlock();
            }
        });
    for (auto& worker : workers)
        worker.join();
    EXPECT_EQ(0, overlaps.load());
    EXPECT_EQ(80000, counter);
}

struct First {};

} // namespace

TEST(Locking, EveryKindExcludesOtherThreads) {
    recursive_mutex mutex; // through try_lock: the others wrap a recursive_mutex's lock()
    ExpectMutualExclusion(
        [&] {
            while (!mutex.try_lock())
                std::this_thread::yield();
        },
        [&] { mutex.unlock(); });
    const LocalLocking object;
    ExpectMutualExclusion([&] { object.Lock(); }, [&] { object.Unlock(); });
    ExpectMutualExclusion(GlobalLocking<First>::GlobalLock, GlobalLocking<First>::GlobalUnlock);
}

TEST(LocalLocking, GuardsNestAndEachObjectKeepsItsOwnMutex) {
    LocalLocking object;
    std::future<void> attempt;
    {
        LocalLock outer(object);
        {
            LocalLock inner(object);
            attempt = Elsewhere([&] { LocalLock guard(object); });
        }
        EXPECT_FALSE(Done(attempt, 100ms)); // the outer guard still holds the lock
        const LocalLocking other;
        auto free = Elsewhere([&] { LocalLock guard(other); });
        EXPECT_TRUE(Done(free, 10s));
    }
    EXPECT_TRUE(Done(attempt, 10s));
}
