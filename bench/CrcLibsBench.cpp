// COXCRC32 and COXCRC16 against the CRC libraries of the system, on the same buffers in the
// same run: ISA-L (crc32_gzip_refl, crc16_t10dif), libdeflate and zlib (CRC-32 only), at
// short, medium and long blocks and on a buffer larger than the last-level cache. Results are
// checked identical first; the table gives GB/s and the speed of the class over each library.
// Every candidate is called through a function pointer, and they run in turns, each keeping
// its best time, so that a busy machine slows all of them alike.
#include <isa-l/crc.h>
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "BenchTiming.h"
#include "COXCheckBase.h"
#include "CrcKernels.h"

namespace {

using Function = std::uint32_t (*)(const unsigned char* data, std::size_t length);

COXCRC32 g_crc32(0xEDB88320);
COXCRC16 g_t10dif(0x8BB7);

// The common CRC-32 (the class's register is its complement) and T10-DIF from a zero start.
std::uint32_t Crc32Class(const unsigned char* data, std::size_t length) {
    return ~g_crc32.CalculateBlock(const_cast<unsigned char*>(data), static_cast<DWORD>(length),
                                   0xFFFFFFFF);
}
std::uint32_t Crc32Isal(const unsigned char* data, std::size_t length) {
    return crc32_gzip_refl(0, data, length);
}
std::uint32_t Crc32Libdeflate(const unsigned char* data, std::size_t length) {
    return libdeflate_crc32(0, data, length);
}
std::uint32_t Crc32Zlib(const unsigned char* data, std::size_t length) {
    return static_cast<std::uint32_t>(crc32(0, data, static_cast<uInt>(length)));
}
std::uint32_t Crc16Class(const unsigned char* data, std::size_t length) {
    return g_t10dif.CalculateBlock(const_cast<unsigned char*>(data), static_cast<DWORD>(length), 0);
}
std::uint32_t Crc16Isal(const unsigned char* data, std::size_t length) {
    return crc16_t10dif(0, data, length);
}

struct Candidate {
    const char* name;
    Function run;
};

// Bytes each timing covers at least, so that short blocks take many calls per timing.
const std::size_t BytesPerTiming = 4u << 20;

// Best nanoseconds per call of each candidate, the candidates taking turns.
std::vector<double> Measure(const std::vector<Candidate>& candidates, const unsigned char* data,
                            std::size_t length) {
    const std::size_t calls = std::max<std::size_t>(1, BytesPerTiming / length);
    const int rounds = length > BytesPerTiming ? 10 : 25;
    std::vector<double> best(candidates.size(), 0.0);
    std::uint32_t sink = 0;
    for (int round = 0; round < rounds; ++round)
        for (std::size_t turn = 0; turn < candidates.size(); ++turn) {
            // Every other round in reverse order, so that no candidate always follows the same.
            const std::size_t c = round % 2 ? candidates.size() - 1 - turn : turn;
            const Function run = candidates[c].run;
            const double ns =
                KelBench::NsPerCall([&](std::size_t) { sink ^= run(data, length); }, calls, 1);
            if (round == 0 || ns < best[c])
                best[c] = ns;
        }
    KelBench::Barrier();
    if (sink == 0x12345678)
        std::printf("(sink)\n");
    return best;
}

// One table: a row per size with each candidate's GB/s, then the first candidate's speed over
// each of the others. False when a result differs.
bool Table(const char* title, const std::vector<Candidate>& candidates,
           const std::vector<std::size_t>& sizes, const std::vector<unsigned char>& buffer) {
    for (std::size_t size : sizes)
        for (std::size_t offset : {0, 1, 7})
            for (std::size_t c = 1; c < candidates.size(); ++c) {
                const std::size_t length = std::min(size, buffer.size() - offset);
                const unsigned char* data = buffer.data() + offset;
                if (candidates[c].run(data, length) != candidates[0].run(data, length)) {
                    std::printf("%s: %s differs at %zu bytes\n", title, candidates[c].name, length);
                    return false;
                }
            }
    std::printf("\n%s: GB/s, and the speed of %s over each\n%12s", title, candidates[0].name,
                "size");
    for (const Candidate& candidate : candidates)
        std::printf(" %11s", candidate.name);
    for (std::size_t c = 1; c < candidates.size(); ++c)
        std::printf("  x %-10s", candidates[c].name);
    std::printf("\n");
    for (std::size_t size : sizes) {
        const std::vector<double> ns = Measure(candidates, buffer.data(), size);
        if (size >= 1u << 20)
            std::printf("%8zu MiB", size >> 20);
        else if (size >= 1024)
            std::printf("%8zu KiB", size >> 10);
        else
            std::printf("%10zu B", size);
        for (double n : ns)
            std::printf(" %11.2f", size / n);
        for (std::size_t c = 1; c < ns.size(); ++c)
            std::printf("  %7.2f x   ", ns[c] / ns[0]);
        std::printf("\n");
    }
    return true;
}

} // namespace

int main() {
    KelBench::PrintBuildNote();
    // Larger than the last-level cache of today's processors (tens of MiB), so that the long
    // block streams from memory.
    const std::size_t large = 256u << 20;
    std::vector<unsigned char> buffer(large);
    std::mt19937_64 random(10);
    for (auto& byte : buffer)
        byte = static_cast<unsigned char>(random());
    const std::vector<std::size_t> sizes = {64, 256, 4096, 256 * 1024, large};
    std::printf("loop of the classes: %s\n", KelBase::Crc::LoopName(KelBase::Crc::SelectedLoop()));
    const bool same32 = Table("CRC-32 (0xEDB88320)",
                              {{"COXCRC32", Crc32Class},
                               {"ISA-L", Crc32Isal},
                               {"libdeflate", Crc32Libdeflate},
                               {"zlib", Crc32Zlib}},
                              sizes, buffer);
    const bool same16 = Table("CRC-16/T10-DIF (0x8BB7)",
                              {{"COXCRC16", Crc16Class}, {"ISA-L", Crc16Isal}}, sizes, buffer);
    return same32 && same16 ? 0 : 1;
}
