#pragma once
// Block loops of the CRC classes. They need no operating system and no object state: each
// takes the running register, the data and the tables of one polynomial, and returns the new
// register. The results are bit-identical to the one-lookup-per-byte definition for every
// polynomial, start value and length; only the speed differs.
//
// The loops come in three kinds: the portable table loop, 128-bit carry-less folding and
// 512-bit carry-less folding (x86-64 only). The classes run the one chosen once per process:
// the fastest this processor runs, or the one named by the environment variable KEL_CRC_LOOP
// ("portable", "clmul" or "wide") when the processor runs it. A name the processor cannot run
// gets the fastest loop it can; an unknown name is ignored. The switch exists so that every
// loop can be checked end to end on one machine.
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace KelBase {
namespace Crc {

// Bytes per stripe of the portable loop: long blocks run five stripes side by side (five
// independent lookup chains) and join them with one multiplication each.
constexpr std::size_t StripeBytes = 4096;
constexpr std::size_t Stripes = 5;

// Bytes per region of the carry-less loops: very long blocks are read as four regions side by
// side, which keeps more memory reads in flight than one stream; each chain asks for its data
// a little ahead as well.
constexpr std::size_t RegionBytes = 65536;

// Constants kept per polynomial beside its tables. A fold pair multiplies the low and the high
// half of a 16-byte lane to move it the given number of bits further on (the pairs from 384 to
// 128 bits are read as one row); the stripe shift moves a register over one stripe of the
// eight-byte loop. The last three reduce a folded lane to the register: one fold down to 96 bits,
// then the quotient and the polynomial of a Barrett reduction.
enum Constant {
    FoldRegionLow,
    FoldRegionHigh,
    Fold2048Low,
    Fold2048High,
    Fold1536Low,
    Fold1536High,
    Fold1024Low,
    Fold1024High,
    Fold512Low,
    Fold512High,
    Fold384Low,
    Fold384High,
    Fold256Low,
    Fold256High,
    Fold128Low,
    Fold128High,
    StripeShift,
    Polynomial,
    ReduceLane,
    BarrettQuotient,
    BarrettPolynomial,
    ConstantCount
};

// tables[0] is the byte table; tables[k][i] is the register after byte i followed by k zero
// bytes, so that eight bytes take eight independent lookups.
// The 32-bit tables are for the reflected CRC, the 16-bit ones for the most significant bit
// first CRC.
void BuildTables(std::uint32_t polynomial, std::uint32_t (*tables)[256], std::uint64_t* constants);
void BuildTables(std::uint16_t polynomial, std::uint16_t (*tables)[256], std::uint64_t* constants);

// Reflected (least significant bit first) 32-bit CRC.
using Crc32Loop = std::uint32_t (*)(std::uint32_t crc, const unsigned char* data,
                                    std::size_t length, const std::uint32_t (*tables)[256],
                                    const std::uint64_t* constants);
// Most significant bit first 16-bit CRC.
using Crc16Loop = std::uint16_t (*)(std::uint16_t crc, const unsigned char* data,
                                    std::size_t length, const std::uint16_t (*tables)[256],
                                    const std::uint64_t* constants);

// The portable loops: eight bytes per step, several stripes at a time on long blocks.
extern const Crc32Loop Crc32Slice8;
extern const Crc16Loop Crc16Slice8;

#ifdef __x86_64__
// Carry-less loops. Clmul needs PCLMULQDQ with SSE4.1; Wide needs VPCLMULQDQ with AVX-512.
// Blocks under 16 bytes take the table loop, and Wide folds blocks under 64 bytes as Clmul
// does.
extern const Crc32Loop Crc32Clmul;
extern const Crc16Loop Crc16Clmul;
extern const Crc32Loop Crc32Wide;
extern const Crc16Loop Crc16Wide;
#else
constexpr Crc32Loop Crc32Clmul = nullptr;
constexpr Crc16Loop Crc16Clmul = nullptr;
constexpr Crc32Loop Crc32Wide = nullptr;
constexpr Crc16Loop Crc16Wide = nullptr;
#endif

// The kinds of loop, slowest first.
enum class LoopKind { Portable, Clmul, Wide };

// The name KEL_CRC_LOOP takes for the kind.
const char* LoopName(LoopKind kind);

// The loop of that kind; null when this processor cannot run it.
Crc32Loop Crc32LoopOf(LoopKind kind);
Crc16Loop Crc16LoopOf(LoopKind kind);

// The kind the CRC classes run, chosen on first use (see the top of this file).
LoopKind SelectedLoop();

// The loops the CRC classes call. Each starts as a resolver that stores the selected loop and
// runs it, so that a call costs one load and one indirect call, and nothing depends on the
// order in which static objects are built.
extern std::atomic<Crc32Loop> Crc32Dispatch;
extern std::atomic<Crc16Loop> Crc16Dispatch;

} // namespace Crc
} // namespace KelBase
