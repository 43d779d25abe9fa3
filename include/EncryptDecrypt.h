#pragma once
/// @file
/// Keyed, reversible scrambling of integers, 128-bit values and buffers (not encryption).
#include <cstddef>
#include <cstdint>

#include "KelBaseExport.h"

/// Keyed, reversible scrambling of 32-bit integers, 128-bit values and byte buffers under a
/// 32-bit key, for hiding values from casual reading (serial numbers in settings, counters in
/// files). It is obfuscation, NOT encryption: with 32 bits of key, anyone who has the data
/// finds the key by trying them all. Use CRijndael where secrecy matters.
///
/// For every key, Decrypt(Encrypt(x, key), key) == x. Two different keys give different
/// results for the same 32-bit value (for one value, each key gives another result), and for
/// the same byte buffer of 4 bytes or more (its first four bytes differ); for 128-bit values a
/// clash of two keys is as unlikely as for random permutations. A change of one input bit
/// changes about half the bits of a 32-bit or 128-bit result, and in a buffer every byte from
/// its own word to the end.
///
/// Buffers are scrambled in place as little-endian 32-bit words, each depending on the one
/// before it; a last partial word takes the leading bytes of its key-stream word. A null buffer
/// with a length returns false and does nothing.
/// A 128-bit value as four 32-bit parts.
struct MValue128 {
    std::uint32_t m_parts[4]; ///< The parts, in the caller's order.

    /// Equal when all four parts are.
    ///@{
    bool operator==(const MValue128& other) const {
        return m_parts[0] == other.m_parts[0] && m_parts[1] == other.m_parts[1] &&
               m_parts[2] == other.m_parts[2] && m_parts[3] == other.m_parts[3];
    }
    bool operator!=(const MValue128& other) const { return !(*this == other); }
    ///@}
};

/// Scrambles (Encrypt) or unscrambles (Decrypt) a 32-bit or 128-bit value under `key`.
///@{
KELBASE_API std::uint32_t Encrypt(std::uint32_t value, std::uint32_t key);
KELBASE_API std::uint32_t Decrypt(std::uint32_t value, std::uint32_t key);
KELBASE_API MValue128 Encrypt(const MValue128& value, std::uint32_t key);
KELBASE_API MValue128 Decrypt(const MValue128& value, std::uint32_t key);
///@}
/// Scrambles or unscrambles `length` bytes of `data` in place under `key`; false for a null
/// buffer with a length.
///@{
KELBASE_API bool Encrypt(void* data, std::size_t length, std::uint32_t key);
KELBASE_API bool Decrypt(void* data, std::size_t length, std::uint32_t key);
///@}
