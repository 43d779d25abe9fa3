#pragma once
// Timing helpers shared by the benchmarks: steady_clock, best of N runs, nanoseconds per call,
// and the ratio to a reference measured in the same run.
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace KelBench {

// Keeps the compiler from deleting or merging a loop whose body has no visible effect.
inline void Barrier() {
    asm volatile("" ::: "memory");
}

// The best of `runs` timings of `calls` calls of `body(i)`, in nanoseconds per call.
template <class Body> double NsPerCall(Body&& body, std::size_t calls, int runs = 5) {
    double best = 0.0;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t i = 0; i < calls; ++i)
            body(i);
        const std::chrono::duration<double, std::nano> elapsed =
            std::chrono::steady_clock::now() - start;
        const double ns = elapsed.count() / static_cast<double>(calls);
        if (run == 0 || ns < best)
            best = ns;
    }
    return best;
}

// An empty loop, the usual reference: what the loop itself costs per call.
inline double EmptyLoopNs(std::size_t calls, int runs = 5) {
    return NsPerCall([](std::size_t) { Barrier(); }, calls, runs);
}

inline double Ratio(double ns, double referenceNs) {
    return referenceNs > 0.0 ? ns / referenceNs : 0.0;
}

// One result line: name, nanoseconds per call, ratio to the reference.
inline void Report(const char* name, double ns, double referenceNs) {
    std::printf("%-52s %9.2f ns/call %9.1f x reference\n", name, ns, Ratio(ns, referenceNs));
}

} // namespace KelBench
