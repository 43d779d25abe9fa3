// The carry-less CRC loops of x86-64. The block is read as 16-byte lanes; a lane moves further
// on by multiplying its two halves with powers of x modulo the polynomial, and is added to the
// lane it lands on, until one lane is left; the last partial lane is shifted in, and the lane
// is reduced to the register with one more fold and a Barrett reduction. This is the folding
// of V. Gopal et al., "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ
// Instruction" (Intel, 2009), with the constants of each polynomial computed beside its tables.
// The 128-bit loop keeps four lanes side by side; the 512-bit loop sixteen, in four chains.
#include <immintrin.h>

#include "CrcArithmetic.h"

namespace KelBase {
namespace Crc {
namespace {

// How far ahead the region loop asks for data.
constexpr std::size_t PrefetchBytes = 2048;
// Below a lane the table loop is faster; below four 64-byte lanes the 128-bit loop.
constexpr std::size_t MinLaneLength = 16;
constexpr std::size_t MinWideLength = 64;

#define KEL_CLMUL __attribute__((target("pclmul,sse4.1")))
#define KEL_CLMUL_INLINE KEL_CLMUL __attribute__((always_inline)) inline
#define KEL_WIDE __attribute__((target("vpclmulqdq,avx512f,avx512bw,pclmul,sse4.1")))
#define KEL_WIDE_INLINE KEL_WIDE __attribute__((always_inline)) inline

// Reflected data is in bit order as loaded; most-significant-bit-first data is byte-reversed
// so that its first bit lands at bit 127 of a lane.
KEL_CLMUL_INLINE __m128i ReverseMask() {
    return _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}

template <bool Reversed> KEL_CLMUL_INLINE __m128i Lane(const unsigned char* p) {
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    return Reversed ? _mm_shuffle_epi8(x, ReverseMask()) : x;
}

KEL_CLMUL_INLINE __m128i Constants(const std::uint64_t* pair) {
    return _mm_set_epi64x(static_cast<long long>(pair[1]), static_cast<long long>(pair[0]));
}

// The 16 bytes in each of the four lanes. (The unmasked forms of the lane intrinsics warn in
// this compiler's own headers.)
KEL_WIDE_INLINE __m512i Broadcast(__m128i x) {
    return _mm512_maskz_broadcast_i32x4(0xFFFF, x);
}

KEL_WIDE_INLINE __m512i WideConstants(const std::uint64_t* pair) {
    return Broadcast(Constants(pair));
}

// x moved on by the distance of k, plus next.
KEL_CLMUL_INLINE __m128i Fold(__m128i x, __m128i k, __m128i next) {
    return _mm_xor_si128(
        _mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x00), _mm_clmulepi64_si128(x, k, 0x11)), next);
}

// x stands for the data up to `end - length`; adds the last `length` (1 to 15) bytes. The
// first `length` bytes of x (in data order) move to the end of a lane that is folded over the
// rest of x followed by those bytes, as one more whole lane would be.
template <bool Reversed>
KEL_CLMUL_INLINE __m128i PartialLane(__m128i x, std::size_t length, const unsigned char* end,
                                     __m128i k128) {
    // 16 bytes from Shifts + s shuffle a lane s bytes towards its low end, from Shifts + 32 - s
    // s bytes towards its high end; bytes that come in are zero and have their top bit set.
    // clang-format off
    static const unsigned char Shifts[48] = {
        0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15,
        0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
        0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80,
        0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    // clang-format on
    const std::size_t s = Reversed ? 16 - length : 16 + length;
    const std::size_t t = Reversed ? 32 - length : length;
    const __m128i toEnd = _mm_loadu_si128(reinterpret_cast<const __m128i*>(Shifts + s));
    const __m128i dropFirst = _mm_loadu_si128(reinterpret_cast<const __m128i*>(Shifts + t));
    const __m128i rest =
        _mm_blendv_epi8(_mm_shuffle_epi8(x, dropFirst), Lane<Reversed>(end - 16), dropFirst);
    return Fold(_mm_shuffle_epi8(x, toEnd), k128, rest);
}

// The register of a lane L, L x^32 mod P, in two steps. The lane's low half (its high powers)
// moves down by 64 powers while the high half moves up by 32, which leaves S of 96 bits; then
// Barrett's quotient q = floor(S / P) = floor(floor(S / x^32) mu / x^64), mu = floor(x^96 / P),
// and the register is the low 32 powers of S + q P. Reflected, a 64-bit half holds its high
// powers in its low bits, and the quotient constant lacks mu's x^0 term, which changes no
// quotient, so that the product of the two comes out with q in place.
KEL_CLMUL_INLINE std::uint32_t Reduce(Reflected32, __m128i x, const std::uint64_t* c) {
    const __m128i k = Constants(c + ReduceLane);
    const __m128i s =
        _mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x00), _mm_slli_si128(_mm_srli_si128(x, 8), 4));
    const __m128i high = _mm_srli_si128(s, 4);
    const __m128i q = _mm_clmulepi64_si128(high, k, 0x10);
    const __m128i qp = _mm_clmulepi64_si128(q, _mm_cvtsi64_si128(c[BarrettPolynomial]), 0x00);
    return static_cast<std::uint32_t>(_mm_extract_epi32(_mm_xor_si128(qp, high), 2));
}

// The same for L x^16 mod P, most significant bit first: S has 80 bits, mu = floor(x^80 / P),
// and the constant holds mu without its x^64 term, which adds floor(S / x^16) to q.
KEL_CLMUL_INLINE std::uint16_t Reduce(Msb16, __m128i x, const std::uint64_t* c) {
    const __m128i k = Constants(c + ReduceLane);
    const __m128i s =
        _mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x01), _mm_slli_si128(_mm_move_epi64(x), 2));
    const __m128i high = _mm_srli_si128(s, 2);
    const __m128i q = _mm_xor_si128(_mm_srli_si128(_mm_clmulepi64_si128(high, k, 0x10), 8), high);
    const __m128i qp = _mm_clmulepi64_si128(q, _mm_cvtsi64_si128(c[BarrettPolynomial]), 0x00);
    return static_cast<std::uint16_t>(_mm_cvtsi128_si32(_mm_xor_si128(qp, s)));
}

// The register goes onto the first four bytes (reflected) or the top sixteen bits of the first
// lane.
KEL_CLMUL_INLINE __m128i First(std::uint32_t crc) {
    return _mm_cvtsi32_si128(static_cast<int>(crc));
}

KEL_CLMUL_INLINE __m128i First(std::uint16_t crc) {
    return _mm_set_epi64x(static_cast<long long>(std::uint64_t{crc} << 48), 0);
}

// x stands for the data before p: folds in the whole lanes and the partial one up to `end`, and
// returns the register.
template <class Tr>
KEL_CLMUL_INLINE typename Tr::Reg Finish(__m128i x, const unsigned char* p,
                                         const unsigned char* end, const std::uint64_t* constants) {
    const __m128i k128 = Constants(constants + Fold128Low);
    for (; end - p >= 16; p += 16)
        x = Fold(x, k128, Lane<!Tr::Reflected>(p));
    if (p != end)
        x = PartialLane<!Tr::Reflected>(x, static_cast<std::size_t>(end - p), end, k128);
    return Reduce(Tr(), x, constants);
}

// Four 16-byte lanes side by side from 64 bytes on, joined in one step.
template <class Tr>
KEL_CLMUL_INLINE typename Tr::Reg
ClmulLoop(typename Tr::Reg crc, const unsigned char* data, std::size_t length,
          const typename Tr::Reg (*tables)[256], const std::uint64_t* constants) {
    constexpr bool Reversed = !Tr::Reflected;
    if (length < MinLaneLength)
        return SliceLoop<Tr>(crc, data, length, tables, constants);
    const unsigned char* p = data;
    const unsigned char* end = data + length;
    __m128i x = _mm_xor_si128(Lane<Reversed>(p), First(crc));
    if (length >= 64) {
        const __m128i k512 = Constants(constants + Fold512Low);
        __m128i x1 = Lane<Reversed>(p + 16);
        __m128i x2 = Lane<Reversed>(p + 32);
        __m128i x3 = Lane<Reversed>(p + 48);
        for (p += 64; end - p >= 64; p += 64) {
            x = Fold(x, k512, Lane<Reversed>(p));
            x1 = Fold(x1, k512, Lane<Reversed>(p + 16));
            x2 = Fold(x2, k512, Lane<Reversed>(p + 32));
            x3 = Fold(x3, k512, Lane<Reversed>(p + 48));
        }
        x = Fold(x, Constants(constants + Fold384Low),
                 Fold(x1, Constants(constants + Fold256Low),
                      Fold(x2, Constants(constants + Fold128Low), x3)));
    } else {
        p += 16;
    }
    return Finish<Tr>(x, p, end, constants);
}

template <bool Reversed> KEL_WIDE_INLINE __m512i WideLane(const unsigned char* p) {
    const __m512i x = _mm512_loadu_si512(p);
    return Reversed ? _mm512_shuffle_epi8(x, Broadcast(ReverseMask())) : x;
}

KEL_WIDE_INLINE __m512i WideFold(__m512i x, __m512i k, __m512i next) {
    return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(x, k, 0x00),
                                     _mm512_clmulepi64_epi128(x, k, 0x11), next, 0x96);
}

// Four chains of 64-byte lanes: chain j reads at p + j * spacing + i * advance for i < steps,
// and `carry` enters chain 0. kAdvance moves a lane by `advance` bytes.
template <bool Reversed>
KEL_WIDE_INLINE void FourChains(const unsigned char* p, std::size_t steps, std::size_t spacing,
                                std::size_t advance, __m512i carry, __m512i kAdvance,
                                __m512i (&x)[4]) {
    x[0] = _mm512_xor_si512(WideLane<Reversed>(p), carry);
#pragma GCC unroll 4
    for (int chain = 1; chain < 4; ++chain)
        x[chain] = WideLane<Reversed>(p + chain * spacing);
    for (std::size_t i = 1; i < steps; ++i) {
        p += advance;
#pragma GCC unroll 4
        for (int chain = 0; chain < 4; ++chain)
            _mm_prefetch(reinterpret_cast<const char*>(p + chain * spacing + PrefetchBytes),
                         _MM_HINT_T0);
#pragma GCC unroll 4
        for (int chain = 0; chain < 4; ++chain)
            x[chain] = WideFold(x[chain], kAdvance, WideLane<Reversed>(p + chain * spacing));
    }
}

// Regions of four chains a region apart, joined one after the other; then four interleaved
// chains over the rest, each moved to the end of the last in one step; then single 64-byte
// lanes; then the four 16-byte parts of the last lane, again in one step. From 256 bytes on;
// below that the 128-bit loop.
template <class Tr>
KEL_WIDE typename Tr::Reg WideLoop(typename Tr::Reg crc, const unsigned char* data,
                                   std::size_t length, const typename Tr::Reg (*tables)[256],
                                   const std::uint64_t* constants) {
    constexpr bool Reversed = !Tr::Reflected;
    if (length < MinWideLength)
        return ClmulLoop<Tr>(crc, data, length, tables, constants);
    const unsigned char* p = data;
    const unsigned char* end = data + length;
    const __m512i k512 = WideConstants(constants + Fold512Low);
    const __m512i zero = _mm512_setzero_si512();
    __m512i carry = _mm512_inserti32x4(zero, First(crc), 0);
    __m512i lane = _mm512_xor_si512(WideLane<Reversed>(p), carry);
    if (length >= 512) {
        __m512i x[4];
        if (end - p >= static_cast<std::ptrdiff_t>(4 * RegionBytes + 256)) {
            const __m512i kRegion = WideConstants(constants + FoldRegionLow);
            for (; end - p >= static_cast<std::ptrdiff_t>(4 * RegionBytes + 256);
                 p += 4 * RegionBytes) {
                FourChains<Reversed>(p, RegionBytes / 64, RegionBytes, 64, carry, k512, x);
#pragma GCC unroll 3
                for (int chain = 1; chain < 4; ++chain)
                    x[chain] = WideFold(x[chain - 1], kRegion, x[chain]);
                carry = WideFold(x[3], k512, zero);
            }
        }
        const std::size_t steps = static_cast<std::size_t>(end - p) / 256;
        FourChains<Reversed>(p, steps, 64, 256, carry, WideConstants(constants + Fold2048Low), x);
        lane = WideFold(
            x[0], WideConstants(constants + Fold1536Low),
            WideFold(x[1], WideConstants(constants + Fold1024Low), WideFold(x[2], k512, x[3])));
        p += 256 * steps;
    } else {
        p += 64;
    }
    for (; end - p >= 64; p += 64)
        lane = WideFold(lane, k512, WideLane<Reversed>(p));
    // Fold384Low to Fold128High in a row, and nothing for the last part.
    const __m512i kParts = _mm512_maskz_loadu_epi64(0x3F, constants + Fold384Low);
    const __m512i parts = WideFold(lane, kParts, _mm512_maskz_mov_epi64(0xC0, lane));
    const __m256i halves = _mm256_xor_si256(_mm512_maskz_extracti64x4_epi64(0xF, parts, 0),
                                            _mm512_maskz_extracti64x4_epi64(0xF, parts, 1));
    return Finish<Tr>(
        _mm_xor_si128(_mm256_castsi256_si128(halves), _mm256_extracti128_si256(halves, 1)), p, end,
        constants);
}

} // namespace

const Crc32Loop Crc32Clmul = ClmulLoop<Reflected32>;
const Crc16Loop Crc16Clmul = ClmulLoop<Msb16>;
const Crc32Loop Crc32Wide = WideLoop<Reflected32>;
const Crc16Loop Crc16Wide = WideLoop<Msb16>;

} // namespace Crc
} // namespace KelBase
