#include "EncryptDecrypt.h"

namespace {

// The inverse of an odd number modulo 2^32 (Newton's iteration doubles the correct bits).
constexpr std::uint32_t InverseOf(std::uint32_t odd) {
    std::uint32_t inverse = odd;
    for (int i = 0; i < 5; ++i)
        inverse *= 2 - odd * inverse;
    return inverse;
}

constexpr std::uint32_t M1 = 0x85EBCA6B, M2 = 0xC2B2AE35;
static_assert(M1 * InverseOf(M1) == 1 && M2 * InverseOf(M2) == 1, "the multipliers are odd");

// A bijection of 32-bit words that spreads every bit over the whole word, and its inverse.
std::uint32_t Mix(std::uint32_t x) {
    x ^= x >> 16;
    x *= M1;
    x ^= x >> 13;
    x *= M2;
    return x ^ (x >> 16);
}

std::uint32_t Unmix(std::uint32_t x) {
    x ^= x >> 16;
    x *= InverseOf(M2);
    x ^= (x >> 13) ^ (x >> 26);
    x *= InverseOf(M1);
    return x ^ (x >> 16);
}

std::uint32_t KeyWord(std::uint32_t key) {
    return Mix(key ^ 0x9E3779B9u);
}

// The key enters between two mixes, through a bijection of its own: for a fixed value the
// result is a bijection of the key too, so different keys never give the same result.
std::uint32_t Scramble(std::uint32_t value, std::uint32_t keyWord) {
    return Mix(Mix(value) ^ keyWord);
}

std::uint32_t Unscramble(std::uint32_t value, std::uint32_t keyWord) {
    return Unmix(Unmix(value) ^ keyWord);
}

// Eight rounds over the four parts, each folding its predecessor in; after four every part
// depends on every input part.
constexpr int Rounds128 = 8;

std::uint32_t RoundKey(std::uint32_t key, int round) {
    return KeyWord(key + static_cast<std::uint32_t>(round) * 0x9E3779B9u);
}

std::uint32_t LoadWord(const unsigned char* p, std::size_t count) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < count; ++i)
        word |= static_cast<std::uint32_t>(p[i]) << (8 * i);
    return word;
}

void StoreWord(unsigned char* p, std::size_t count, std::uint32_t word) {
    for (std::size_t i = 0; i < count; ++i)
        p[i] = static_cast<unsigned char>(word >> (8 * i));
}

// Each word is XORed with the scrambled previous cipher word plus its index (cipher feedback),
// so that a change carries to the end of the buffer.
bool Feedback(void* data, std::size_t length, std::uint32_t key, bool encrypting) {
    if (!data && length)
        return false;
    auto* bytes = static_cast<unsigned char*>(data);
    const std::uint32_t keyWord = KeyWord(key);
    std::uint32_t previous = 0;
    for (std::size_t at = 0, index = 0; at < length; at += 4, ++index) {
        const std::size_t count = length - at < 4 ? length - at : 4;
        const std::uint32_t in = LoadWord(bytes + at, count);
        const std::uint32_t out =
            in ^ Scramble(previous + static_cast<std::uint32_t>(index), keyWord);
        StoreWord(bytes + at, count, out);
        previous = encrypting ? out : in;
    }
    return true;
}

} // namespace

std::uint32_t Encrypt(std::uint32_t value, std::uint32_t key) {
    return Scramble(value, KeyWord(key));
}

std::uint32_t Decrypt(std::uint32_t value, std::uint32_t key) {
    return Unscramble(value, KeyWord(key));
}

MValue128 Encrypt(const MValue128& value, std::uint32_t key) {
    MValue128 result = value;
    std::uint32_t* w = result.m_parts;
    for (int round = 0; round < Rounds128; ++round)
        w[round % 4] = Scramble(w[round % 4] ^ w[(round + 3) % 4], RoundKey(key, round));
    return result;
}

MValue128 Decrypt(const MValue128& value, std::uint32_t key) {
    MValue128 result = value;
    std::uint32_t* w = result.m_parts;
    for (int round = Rounds128 - 1; round >= 0; --round)
        w[round % 4] = Unscramble(w[round % 4], RoundKey(key, round)) ^ w[(round + 3) % 4];
    return result;
}

bool Encrypt(void* data, std::size_t length, std::uint32_t key) {
    return Feedback(data, length, key, true);
}

bool Decrypt(void* data, std::size_t length, std::uint32_t key) {
    return Feedback(data, length, key, false);
}
