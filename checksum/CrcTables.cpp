#include "CrcArithmetic.h"

namespace KelBase {
namespace Crc {
namespace {

std::uint64_t Reverse(std::uint64_t v, int bits) {
    std::uint64_t r = 0;
    for (int i = 0; i < bits; ++i)
        r |= (v >> i & 1) << (bits - 1 - i);
    return r;
}

// floor(x^(64+n) / P) without its x^64 term, for P = x^n + low, bit i of `low` the
// coefficient of x^i (n <= 32).
std::uint64_t BarrettQuotientLow(std::uint64_t low, int n) {
    using Wide = unsigned __int128;
    const Wide divisor = Wide{low} | Wide{1} << n;
    Wide rest = Wide{1} << (64 + n), quotient = 0;
    for (int i = 64 + n; i >= n; --i)
        if (rest >> i & 1) {
            quotient |= Wide{1} << (i - n);
            rest ^= divisor << (i - n);
        }
    return static_cast<std::uint64_t>(quotient);
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

// The reduction of a lane L to its register L x^n mod P (n the width; see Reduce in
// CrcFoldX86.cpp): the power that moves the lane's high half down, Barrett's quotient and the
// polynomial. Reflected, the constants are bit-reversed like the data, carry one power less for
// the extra x of the reflected product, and the quotient keeps its powers 64 to 1.
template <class Tr> void ReductionConstants(typename Tr::Reg polynomial, std::uint64_t* c) {
    const std::uint64_t low = Tr::Reflected ? Reverse(polynomial, Tr::Bits) : polynomial;
    const std::uint64_t quotient = BarrettQuotientLow(low, Tr::Bits);
    if (Tr::Reflected) {
        c[ReduceLane] = std::uint64_t{PowerMod<Tr>(polynomial, 64 + Tr::Bits - 1)} << 32;
        c[BarrettQuotient] = Reverse(std::uint64_t{1} << 63 | quotient >> 1, 64);
        c[BarrettPolynomial] = std::uint64_t{polynomial} << 1 | 1;
    } else {
        c[ReduceLane] = PowerMod<Tr>(polynomial, 64 + Tr::Bits);
        c[BarrettQuotient] = quotient;
        c[BarrettPolynomial] = low | std::uint64_t{1} << Tr::Bits;
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
    FoldPair<Tr>(polynomial, 1536, constants + Fold1536Low);
    FoldPair<Tr>(polynomial, 1024, constants + Fold1024Low);
    FoldPair<Tr>(polynomial, 512, constants + Fold512Low);
    FoldPair<Tr>(polynomial, 384, constants + Fold384Low);
    FoldPair<Tr>(polynomial, 256, constants + Fold256Low);
    FoldPair<Tr>(polynomial, 128, constants + Fold128Low);
    constants[StripeShift] = PowerMod<Tr>(polynomial, 8 * StripeBytes);
    constants[Polynomial] = polynomial;
    ReductionConstants<Tr>(polynomial, constants);
}

} // namespace

void BuildTables(std::uint32_t polynomial, std::uint32_t (*tables)[256], std::uint64_t* constants) {
    FillTables<Reflected32>(polynomial, tables, constants);
}

void BuildTables(std::uint16_t polynomial, std::uint16_t (*tables)[256], std::uint64_t* constants) {
    FillTables<Msb16>(polynomial, tables, constants);
}

} // namespace Crc
} // namespace KelBase
