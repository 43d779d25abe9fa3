#include "CrcKernels.h"

#include <cstring>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#define KEL_CRC_X86 1
#endif

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the loops load words little-endian");

namespace KelBase {
namespace Crc {
namespace {

// How far ahead the carry-less region loop asks for data.
constexpr std::size_t PrefetchBytes = 2048;

std::uint64_t Load64(const unsigned char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

// Reflected 32-bit CRC: register bit j stands for x^(31-j).
struct Reflected32 {
    using Reg = std::uint32_t;
    using Loop = Crc32Loop;
    static constexpr bool Reflected = true;
    static Reg Power(int j) { return 0x80000000u >> j; }
    static Reg TimesX(Reg r, Reg polynomial) { return (r >> 1) ^ ((r & 1u) ? polynomial : 0u); }
    static Reg ByteEntry(unsigned i) { return i; }
    static Reg Byte(Reg crc, unsigned char b, const Reg (*t)[256]) {
        return (crc >> 8) ^ t[0][(crc ^ b) & 0xFF];
    }
    static Reg Step8(Reg crc, const unsigned char* p, const Reg (*t)[256]) {
        const std::uint64_t v = Load64(p) ^ crc;
        const std::uint32_t lo = static_cast<std::uint32_t>(v);
        const std::uint32_t hi = static_cast<std::uint32_t>(v >> 32);
        return t[7][lo & 0xFF] ^ t[6][(lo >> 8) & 0xFF] ^ t[5][(lo >> 16) & 0xFF] ^ t[4][lo >> 24] ^
               t[3][hi & 0xFF] ^ t[2][(hi >> 8) & 0xFF] ^ t[1][(hi >> 16) & 0xFF] ^ t[0][hi >> 24];
    }
};

// Most significant bit first 16-bit CRC: register bit j stands for x^j.
struct Msb16 {
    using Reg = std::uint16_t;
    using Loop = Crc16Loop;
    static constexpr bool Reflected = false;
    static Reg Power(int j) { return static_cast<Reg>(1u << j); }
    static Reg TimesX(Reg r, Reg polynomial) {
        return static_cast<Reg>((r << 1) ^ ((r & 0x8000u) ? polynomial : 0u));
    }
    static Reg ByteEntry(unsigned i) { return static_cast<Reg>(i << 8); }
    static Reg Byte(Reg crc, unsigned char b, const Reg (*t)[256]) {
        return static_cast<Reg>(t[0][(crc >> 8) ^ b] ^ (crc << 8));
    }
    static Reg Step8(Reg crc, const unsigned char* p, const Reg (*t)[256]) {
        const std::uint64_t v = __builtin_bswap64(Load64(p)) ^ (std::uint64_t{crc} << 48);
        return t[7][v >> 56] ^ t[6][(v >> 48) & 0xFF] ^ t[5][(v >> 40) & 0xFF] ^
               t[4][(v >> 32) & 0xFF] ^ t[3][(v >> 24) & 0xFF] ^ t[2][(v >> 16) & 0xFF] ^
               t[1][(v >> 8) & 0xFF] ^ t[0][v & 0xFF];
    }
};

// a * b modulo the polynomial.
template <class Tr>
typename Tr::Reg MulMod(typename Tr::Reg a, typename Tr::Reg b, typename Tr::Reg polynomial) {
    typename Tr::Reg product = 0;
    for (int j = 0; j < static_cast<int>(sizeof(a) * 8); ++j) {
        if (a & Tr::Power(j))
            product ^= b;
        b = Tr::TimesX(b, polynomial);
    }
    return product;
}

// x^n modulo the polynomial.
template <class Tr> typename Tr::Reg PowerMod(typename Tr::Reg polynomial, std::uint64_t n) {
    typename Tr::Reg result = Tr::Power(0), square = Tr::Power(1);
    for (; n; n >>= 1) {
        if (n & 1)
            result = MulMod<Tr>(result, square, polynomial);
        square = MulMod<Tr>(square, square, polynomial);
    }
    return result;
}

// The constants that move a 16-byte lane `bits` further on. The low half of a reflected lane
// holds the high powers, and the reflected carry-less product comes out multiplied by x, so
// each constant carries one power less; the 32-bit residue sits in the upper half of its word.
// Most significant bit first, the low half holds the low powers and the product is exact.
template <class Tr>
void FoldPair(typename Tr::Reg polynomial, std::uint64_t bits, std::uint64_t* pair) {
    if (Tr::Reflected) {
        pair[0] = std::uint64_t{PowerMod<Tr>(polynomial, bits + 64 - 1)} << 32;
        pair[1] = std::uint64_t{PowerMod<Tr>(polynomial, bits - 1)} << 32;
    } else {
        pair[0] = PowerMod<Tr>(polynomial, bits);
        pair[1] = PowerMod<Tr>(polynomial, bits + 64);
    }
}

template <class Tr>
void FillTables(typename Tr::Reg polynomial, typename Tr::Reg (*tables)[256],
                std::uint64_t* constants) {
    for (unsigned i = 0; i < 256; ++i) {
        typename Tr::Reg r = Tr::ByteEntry(i);
        for (int bit = 0; bit < 8; ++bit)
            r = Tr::TimesX(r, polynomial);
        tables[0][i] = r;
    }
    for (int k = 1; k < 8; ++k)
        for (int i = 0; i < 256; ++i)
            tables[k][i] = Tr::Byte(tables[k - 1][i], 0, tables);
    FoldPair<Tr>(polynomial, 8 * RegionBytes, constants + FoldRegionLow);
    FoldPair<Tr>(polynomial, 2048, constants + Fold2048Low);
    FoldPair<Tr>(polynomial, 512, constants + Fold512Low);
    FoldPair<Tr>(polynomial, 128, constants + Fold128Low);
    constants[StripeShift] = PowerMod<Tr>(polynomial, 8 * StripeBytes);
    constants[Polynomial] = polynomial;
}

template <class Tr>
typename Tr::Reg SliceLoop(typename Tr::Reg crc, const unsigned char* data, std::size_t length,
                           const typename Tr::Reg (*t)[256], const std::uint64_t* constants) {
    using Reg = typename Tr::Reg;
    // crc(A B) = crc(A) * x^(8 |B|) + crc(B) from a zero register.
    for (; length >= Stripes * StripeBytes;
         data += Stripes * StripeBytes, length -= Stripes * StripeBytes) {
        Reg c[Stripes] = {crc};
        for (std::size_t i = 0; i < StripeBytes; i += 8)
#pragma GCC unroll 8
            for (std::size_t s = 0; s < Stripes; ++s)
                c[s] = Tr::Step8(c[s], data + s * StripeBytes + i, t);
        const Reg shift = static_cast<Reg>(constants[StripeShift]);
        const Reg polynomial = static_cast<Reg>(constants[Polynomial]);
        crc = c[0];
        for (std::size_t s = 1; s < Stripes; ++s)
            crc = static_cast<Reg>(MulMod<Tr>(crc, shift, polynomial) ^ c[s]);
    }
    for (; length >= 8; data += 8, length -= 8)
        crc = Tr::Step8(crc, data, t);
    for (; length; ++data, --length)
        crc = Tr::Byte(crc, *data, t);
    return crc;
}

} // namespace

void BuildTables(std::uint32_t polynomial, std::uint32_t (*tables)[256], std::uint64_t* constants) {
    FillTables<Reflected32>(polynomial, tables, constants);
}

void BuildTables(std::uint16_t polynomial, std::uint16_t (*tables)[256], std::uint64_t* constants) {
    FillTables<Msb16>(polynomial, tables, constants);
}

std::uint32_t Crc32Slice8(std::uint32_t crc, const unsigned char* data, std::size_t length,
                          const std::uint32_t (*tables)[256], const std::uint64_t* constants) {
    return SliceLoop<Reflected32>(crc, data, length, tables, constants);
}

std::uint16_t Crc16Slice8(std::uint16_t crc, const unsigned char* data, std::size_t length,
                          const std::uint16_t (*tables)[256], const std::uint64_t* constants) {
    return SliceLoop<Msb16>(crc, data, length, tables, constants);
}

#ifdef KEL_CRC_X86
namespace {

// Below these lengths the lane set-up and the 16-byte finish cost more than they save.
constexpr std::size_t MinClmulLength = 128;
constexpr std::size_t MinWideLength = 512;

#define KEL_CLMUL __attribute__((target("pclmul,sse4.1")))
#define KEL_CLMUL_INLINE __attribute__((target("pclmul,sse4.1"), always_inline)) inline
#define KEL_WIDE __attribute__((target("vpclmulqdq,avx512f,avx512bw,pclmul,sse4.1")))
#define KEL_WIDE_INLINE                                                                            \
    __attribute__((target("vpclmulqdq,avx512f,avx512bw,pclmul,sse4.1"), always_inline)) inline

// Reflected data is in bit order as loaded; most-significant-bit-first data is byte-reversed
// so that its first bit lands at bit 127 of a lane.
KEL_CLMUL_INLINE __m128i ReverseMask() {
    return _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
}

template <bool Reversed> KEL_CLMUL_INLINE __m128i Order(__m128i x) {
    return Reversed ? _mm_shuffle_epi8(x, ReverseMask()) : x;
}

template <bool Reversed> KEL_CLMUL_INLINE __m128i Lane(const unsigned char* p) {
    return Order<Reversed>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
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

// Folds the remaining whole 16-byte lanes into x and stores the 16 bytes whose CRC from a
// zero register equals that of everything consumed. Returns the end of the consumed data.
template <bool Reversed>
KEL_CLMUL_INLINE const unsigned char*
FoldTail(__m128i x, const unsigned char* p, const unsigned char* end,
         const std::uint64_t* constants, unsigned char* residue) {
    const __m128i k128 = Constants(constants + Fold128Low);
    for (; end - p >= 16; p += 16)
        x = Fold(x, k128, Lane<Reversed>(p));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(residue), Order<Reversed>(x));
    return p;
}

// Four 16-byte lanes side by side, then one. `first` is the register placed where it belongs
// in the first lane; needs at least 64 bytes.
template <bool Reversed>
KEL_CLMUL const unsigned char* FoldLanes(const unsigned char* p, const unsigned char* end,
                                         __m128i first, const std::uint64_t* constants,
                                         unsigned char* residue) {
    const __m128i k512 = Constants(constants + Fold512Low);
    const __m128i k128 = Constants(constants + Fold128Low);
    __m128i x0 = _mm_xor_si128(Lane<Reversed>(p), first);
    __m128i x1 = Lane<Reversed>(p + 16);
    __m128i x2 = Lane<Reversed>(p + 32);
    __m128i x3 = Lane<Reversed>(p + 48);
    for (p += 64; end - p >= 64; p += 64) {
        x0 = Fold(x0, k512, Lane<Reversed>(p));
        x1 = Fold(x1, k512, Lane<Reversed>(p + 16));
        x2 = Fold(x2, k512, Lane<Reversed>(p + 32));
        x3 = Fold(x3, k512, Lane<Reversed>(p + 48));
    }
    x1 = Fold(x0, k128, x1);
    x2 = Fold(x1, k128, x2);
    x3 = Fold(x2, k128, x3);
    return FoldTail<Reversed>(x3, p, end, constants, residue);
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
// and `carry` enters chain 0. kAdvance and kSpacing move a lane by `advance` and `spacing`
// bytes. Returns the chains merged into one lane, which stands for all the data read up to the
// last lane of chain 3.
template <bool Reversed>
KEL_WIDE_INLINE __m512i FourChains(const unsigned char* p, std::size_t steps, std::size_t spacing,
                                   std::size_t advance, __m512i carry, __m512i kAdvance,
                                   __m512i kSpacing) {
    __m512i x0 = _mm512_xor_si512(WideLane<Reversed>(p), carry);
    __m512i x1 = WideLane<Reversed>(p + spacing);
    __m512i x2 = WideLane<Reversed>(p + 2 * spacing);
    __m512i x3 = WideLane<Reversed>(p + 3 * spacing);
    for (std::size_t i = 1; i < steps; ++i) {
        p += advance;
        for (int chain = 0; chain < 4; ++chain)
            _mm_prefetch(reinterpret_cast<const char*>(p + chain * spacing + PrefetchBytes),
                         _MM_HINT_T0);
        x0 = WideFold(x0, kAdvance, WideLane<Reversed>(p));
        x1 = WideFold(x1, kAdvance, WideLane<Reversed>(p + spacing));
        x2 = WideFold(x2, kAdvance, WideLane<Reversed>(p + 2 * spacing));
        x3 = WideFold(x3, kAdvance, WideLane<Reversed>(p + 3 * spacing));
    }
    x1 = WideFold(x0, kSpacing, x1);
    x2 = WideFold(x1, kSpacing, x2);
    return WideFold(x2, kSpacing, x3);
}

// Regions, then four interleaved chains over the rest, then single 64-byte lanes, then the four
// 16-byte parts of the last lane. Needs at least 256 bytes.
template <bool Reversed>
KEL_WIDE const unsigned char* FoldWideLanes(const unsigned char* p, const unsigned char* end,
                                            __m128i first, const std::uint64_t* constants,
                                            unsigned char* residue) {
    const __m512i kRegion = WideConstants(constants + FoldRegionLow);
    const __m512i k2048 = WideConstants(constants + Fold2048Low);
    const __m512i k512 = WideConstants(constants + Fold512Low);
    const __m128i k128 = Constants(constants + Fold128Low);
    const __m512i zero = _mm512_setzero_si512();
    __m512i carry = _mm512_inserti32x4(zero, first, 0);
    for (; end - p >= static_cast<std::ptrdiff_t>(4 * RegionBytes + 256); p += 4 * RegionBytes) {
        const __m512i x =
            FourChains<Reversed>(p, RegionBytes / 64, RegionBytes, 64, carry, k512, kRegion);
        carry = WideFold(x, k512, zero);
    }
    const std::size_t steps = static_cast<std::size_t>(end - p) / 256;
    __m512i x = FourChains<Reversed>(p, steps, 64, 256, carry, k2048, k512);
    for (p += 256 * steps; end - p >= 64; p += 64)
        x = WideFold(x, k512, WideLane<Reversed>(p));
    __m128i part = _mm512_maskz_extracti32x4_epi32(0xF, x, 0);
    part = Fold(part, k128, _mm512_maskz_extracti32x4_epi32(0xF, x, 1));
    part = Fold(part, k128, _mm512_maskz_extracti32x4_epi32(0xF, x, 2));
    part = Fold(part, k128, _mm512_maskz_extracti32x4_epi32(0xF, x, 3));
    return FoldTail<Reversed>(part, p, end, constants, residue);
}

// The register goes onto the first four bytes (reflected) or the top sixteen bits of the first
// lane. Plain SSE2, which every x86-64 processor has.
__m128i First(std::uint32_t crc) {
    return _mm_cvtsi32_si128(static_cast<int>(crc));
}

__m128i First(std::uint16_t crc) {
    return _mm_set_epi64x(static_cast<long long>(std::uint64_t{crc} << 48), 0);
}

// FoldLanes or FoldWideLanes: the whole lanes from p on, carried into 16 residue bytes.
using LaneFolder = const unsigned char* (*)(const unsigned char* p, const unsigned char* end,
                                            __m128i first, const std::uint64_t* constants,
                                            unsigned char* residue);

// A carry-less loop: from MinLength bytes on, Folder takes the whole lanes and the tables take
// its residue and the bytes after the last lane; shorter blocks go to the Shorter loop.
// Most-significant-bit-first data is byte-reversed in the lanes; reflected data is not.
template <class Tr, std::size_t MinLength, LaneFolder Folder, typename Tr::Loop Shorter>
typename Tr::Reg CarrylessLoop(typename Tr::Reg crc, const unsigned char* data, std::size_t length,
                               const typename Tr::Reg (*tables)[256],
                               const std::uint64_t* constants) {
    if (length < MinLength)
        return Shorter(crc, data, length, tables, constants);
    unsigned char residue[16];
    const unsigned char* end = data + length;
    data = Folder(data, end, First(crc), constants, residue);
    const typename Tr::Reg folded = SliceLoop<Tr>(0, residue, 16, tables, constants);
    return SliceLoop<Tr>(folded, data, static_cast<std::size_t>(end - data), tables, constants);
}

template <class Tr>
constexpr typename Tr::Loop ClmulLoop =
    CarrylessLoop<Tr, MinClmulLength, FoldLanes<!Tr::Reflected>, SliceLoop<Tr>>;
template <class Tr>
constexpr typename Tr::Loop WideLoop =
    CarrylessLoop<Tr, MinWideLength, FoldWideLanes<!Tr::Reflected>, ClmulLoop<Tr>>;

bool HasClmul() {
    unsigned eax, ebx, ecx, edx;
    return __get_cpuid(1, &eax, &ebx, &ecx, &edx) && (ecx & bit_PCLMUL) && (ecx & bit_SSSE3) &&
           (ecx & bit_SSE4_1);
}

// The processor must offer the instructions and the system must save the AVX-512 registers.
bool HasWide() {
    unsigned eax, ebx, ecx, edx;
    if (!HasClmul() || !__get_cpuid(1, &eax, &ebx, &ecx, &edx) || !(ecx & bit_OSXSAVE))
        return false;
    unsigned xcr0, xcr0High;
    __asm__("xgetbv" : "=a"(xcr0), "=d"(xcr0High) : "c"(0));
    const unsigned sseAvxAvx512State = 0xE6;
    if ((xcr0 & sseAvxAvx512State) != sseAvxAvx512State)
        return false;
    return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_AVX512F) &&
           (ebx & bit_AVX512BW) && (ecx & bit_VPCLMULQDQ);
}

} // namespace

Crc32Loop Crc32Clmul() {
    return HasClmul() ? ClmulLoop<Reflected32> : nullptr;
}
Crc16Loop Crc16Clmul() {
    return HasClmul() ? ClmulLoop<Msb16> : nullptr;
}
Crc32Loop Crc32Wide() {
    return HasWide() ? WideLoop<Reflected32> : nullptr;
}
Crc16Loop Crc16Wide() {
    return HasWide() ? WideLoop<Msb16> : nullptr;
}
#else
Crc32Loop Crc32Clmul() {
    return nullptr;
}
Crc16Loop Crc16Clmul() {
    return nullptr;
}
Crc32Loop Crc32Wide() {
    return nullptr;
}
Crc16Loop Crc16Wide() {
    return nullptr;
}
#endif

namespace {

template <class Loop> Loop Fastest(Loop wide, Loop clmul, Loop portable) {
    return wide ? wide : clmul ? clmul : portable;
}

} // namespace

Crc32Loop Crc32Best() {
    static const Crc32Loop best = Fastest(Crc32Wide(), Crc32Clmul(), &Crc32Slice8);
    return best;
}

Crc16Loop Crc16Best() {
    static const Crc16Loop best = Fastest(Crc16Wide(), Crc16Clmul(), &Crc16Slice8);
    return best;
}

} // namespace Crc
} // namespace KelBase
