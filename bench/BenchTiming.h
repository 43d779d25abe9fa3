#pragma once
// Timing helpers shared by the benchmarks: steady_clock, best of N runs, nanoseconds per call,
// and the ratio to a reference measured in the same run.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <vector>

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

// The sanitizers' checks slow the timed code; a tree for timing is configured with
// -DKEL_SANITIZE=OFF.
inline void PrintBuildNote() {
#if defined(__SANITIZE_ADDRESS__)
    std::printf("note: built with the sanitizers, timings are not representative "
                "(configure with -DKEL_SANITIZE=OFF)\n");
#endif
}

// One result line: name, nanoseconds per call, ratio to the reference.
inline void Report(const char* name, double ns, double referenceNs) {
    std::printf("%-52s %9.2f ns/call %9.1f x reference\n", name, ns, Ratio(ns, referenceNs));
}

// A loop over one buffer, timed in turns with its rivals (MeasureInTurns).
struct Candidate {
    const char* name;
    std::function<std::uint32_t()> run; // returns something of its result, so it is kept
    double ns = 0.0;
};

// Best time of each candidate over rounds in which every candidate runs once, so that a busy
// machine slows all of them alike.
inline void MeasureInTurns(std::vector<Candidate>& candidates, int rounds) {
    std::uint32_t sink = 0;
    for (int round = 0; round < rounds; ++round)
        for (Candidate& candidate : candidates) {
            const double ns = NsPerCall([&](std::size_t) { sink ^= candidate.run(); }, 1, 1);
            if (round == 0 || ns < candidate.ns)
                candidate.ns = ns;
        }
    Barrier();
    std::printf("(checksum of all results %08X)\n", static_cast<unsigned>(sink));
}

// Speed of the candidate over `bytes` and its speedup over the reference; a goal of 0 is for
// information.
inline void Speedup(const Candidate& candidate, const Candidate& reference, double goal,
                    std::size_t bytes) {
    const double speedup = reference.ns / candidate.ns;
    std::printf("%-40s %6.2f GB/s %6.2f x %-36s", candidate.name, bytes / candidate.ns, speedup,
                reference.name);
    if (goal > 0.0)
        std::printf(" goal %4.1f x: %s", goal, speedup >= goal ? "met" : "MISSED");
    std::printf("\n");
}

} // namespace KelBench
