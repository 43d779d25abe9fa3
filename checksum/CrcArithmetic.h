#pragma once
// The arithmetic every CRC loop shares: the two register layouts, products and powers of x
// modulo the polynomial, and the portable table loop, which the carry-less loops also use for
// blocks too short to fold.
#include <cstring>

#include "CrcKernels.h"

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the loops load words little-endian");

namespace KelBase {
namespace Crc {

inline std::uint64_t Load64(const unsigned char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

// Reflected 32-bit CRC: register bit j stands for x^(31-j).
struct Reflected32 {
    using Reg = std::uint32_t;
    using Loop = Crc32Loop;
    static constexpr bool Reflected = true;
    static constexpr int Bits = 32;
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
    static constexpr int Bits = 16;
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
    for (int j = 0; j < Tr::Bits; ++j) {
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

} // namespace Crc
} // namespace KelBase
