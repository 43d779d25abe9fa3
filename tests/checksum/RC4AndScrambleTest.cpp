// RC4 against RFC 6229; the scrambling functions' promises: reversible for every key, different
// keys give different results, changes spread.
#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cstring>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "EncryptDecrypt.h"
#include "RC4.h"
#include "TestBytes.h"

namespace {

// Key stream bytes at the offsets RFC 6229 lists, produced in uneven pieces.
TEST(RC4Test, Rfc6229KeyStreams) {
    struct Case {
        Bytes key;
        std::size_t offset;
        const wchar_t* stream;
    };
    const Bytes key40 = {1, 2, 3, 4, 5};
    Bytes key128(16);
    std::iota(key128.begin(), key128.end(), 1);
    const Case cases[] = {
        {key40, 16, L"6982944f18fc82d589c403a47a0d0919"},
        {key128, 0, L"9ac7cc9a609d1ef7b2932899cde41b97"},
        {key128, 4096, L"a36a4c301ae8ac13610ccbc12256cacc"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.key.size()) + "-byte key at " + std::to_string(c.offset));
        rc4_key state;
        ASSERT_TRUE(prepare_key(c.key.data(), c.key.size(), &state));
        Bytes stream(c.offset + 16, 0);
        for (std::size_t at = 0, piece = 1; at < stream.size(); at += piece, piece = piece * 3 % 97)
            ASSERT_TRUE(rc4(&stream[at], std::min(piece, stream.size() - at), &state));
        EXPECT_EQ(c.stream, Hex(&stream[c.offset], 16));
    }
}

// Bad arguments fail and change nothing; no data is no work.
TEST(RC4Test, BadArgumentsChangeNothing) {
    rc4_key state;
    std::memset(&state, 0x5A, sizeof state);
    const unsigned char key[1] = {1};
    EXPECT_FALSE(prepare_key(key, 0, &state));
    EXPECT_FALSE(prepare_key(nullptr, 1, &state));
    EXPECT_FALSE(prepare_key(key, 1, nullptr));
    EXPECT_EQ(0x5A, state.state[0]);
    EXPECT_FALSE(rc4(nullptr, 1, &state));
    EXPECT_TRUE(rc4(nullptr, 0, &state));
    EXPECT_EQ(0x5A, state.x);
}

TEST(EncryptDecryptTest, IntegersAndValues) {
    std::mt19937 random(11);
    for (int i = 0; i < 100000; ++i) {
        const auto value = static_cast<std::uint32_t>(random()),
                   key = static_cast<std::uint32_t>(random());
        ASSERT_EQ(value, Decrypt(Encrypt(value, key), key)) << value << " key " << key;
    }
    // For one value, every key of a range gives another result.
    for (std::uint32_t value : {0u, 1u, 0xFFFFFFFFu, 0x12345678u}) {
        std::vector<std::uint32_t> results;
        for (std::uint32_t key = 0; key < 65536; ++key)
            results.push_back(Encrypt(value, key));
        std::sort(results.begin(), results.end());
        EXPECT_EQ(results.end(), std::adjacent_find(results.begin(), results.end())) << value;
    }
    // One flipped input bit changes about half the result bits, on average over many values.
    double changed32 = 0, changed128 = 0;
    const int trials = 2000;
    for (int i = 0; i < trials; ++i) {
        const auto value = static_cast<std::uint32_t>(random()),
                   key = static_cast<std::uint32_t>(random());
        const int bit = random() % 32;
        changed32 +=
            std::bitset<32>(Encrypt(value, key) ^ Encrypt(value ^ (1u << bit), key)).count();
        MValue128 wide;
        for (std::uint32_t& part : wide.m_parts)
            part = static_cast<std::uint32_t>(random());
        const MValue128 scrambled = Encrypt(wide, key);
        ASSERT_EQ(wide, Decrypt(scrambled, key));
        EXPECT_NE(scrambled, Encrypt(wide, key + 1));
        wide.m_parts[bit % 4] ^= 1u << bit;
        const MValue128 other = Encrypt(wide, key);
        for (int p = 0; p < 4; ++p)
            changed128 += std::bitset<32>(scrambled.m_parts[p] ^ other.m_parts[p]).count();
    }
    EXPECT_NEAR(16.0, changed32 / trials, 1.0);
    EXPECT_NEAR(64.0, changed128 / trials, 2.0);
}

TEST(EncryptDecryptTest, Buffers) {
    std::mt19937 random(13);
    for (std::size_t length = 0; length <= 67; ++length) {
        SCOPED_TRACE(length);
        const Bytes plain = RandomBytes(random, length);
        const std::uint32_t key = random();
        Bytes data = plain, other = plain;
        ASSERT_TRUE(Encrypt(data.data(), length, key));
        ASSERT_TRUE(Encrypt(other.data(), length, key ^ 0x100));
        if (length >= 4) {
            EXPECT_NE(Hex(data.data(), 4), Hex(other.data(), 4));
        }
        // A change in one byte changes the following words.
        if (length >= 12) {
            Bytes changed = plain;
            changed[1] ^= 0x80;
            Encrypt(changed.data(), length, key);
            for (std::size_t word = 0; word + 4 <= length; word += 4)
                EXPECT_NE(Hex(&data[word], 4), Hex(&changed[word], 4)) << "word at " << word;
        }
        ASSERT_TRUE(Decrypt(data.data(), length, key));
        EXPECT_EQ(Hex(plain), Hex(data));
    }
    EXPECT_FALSE(Encrypt(nullptr, 1, 0));
    EXPECT_FALSE(Decrypt(nullptr, 1, 0));
    EXPECT_TRUE(Encrypt(nullptr, 0, 0));
}

} // namespace
