// CRijndael and both cipher kernels against the published AES vectors (FIPS-197 appendix C,
// NIST SP 800-38A), and the object's chain, in-place and misuse behaviour.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "CRijndael.h"
#include "RijndaelKernels.h"
#include "StdBase.h"

using namespace KelBase::Rijndael;

namespace {

std::vector<unsigned char> Bytes(const wchar_t* hex) {
    std::vector<unsigned char> bytes;
    EXPECT_TRUE(StdBase::ConvertHexToBytes(hex, bytes)) << hex;
    return bytes;
}

std::wstring Hex(const std::vector<unsigned char>& bytes) {
    return StdBase::ConvertBytesToHex(bytes.data(), bytes.size());
}

// The kernels this processor runs.
std::vector<const Kernel*> Kernels(int blockBytes) {
    std::vector<const Kernel*> kernels = {&Portable(blockBytes)};
    if (AesNi(blockBytes))
        kernels.push_back(AesNi(blockBytes));
    return kernels;
}

const wchar_t* const Sp800Plain =
    L"6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"
    L"30c81c46a35ce411e5fbc1191a0a52eff69f2445df4f9b17ad2b417be66c3710";
const wchar_t* const Sp800Iv = L"000102030405060708090a0b0c0d0e0f";

struct Vector {
    const wchar_t* name;
    const wchar_t* key;
    const wchar_t* iv; // null for ECB
    int mode;          // 0 ECB, 1 CBC, 2 CFB
    const wchar_t* plain;
    const wchar_t* cipher;
};

const Vector Vectors[] = {
    {L"FIPS-197 C.1", L"000102030405060708090a0b0c0d0e0f", nullptr, 0,
     L"00112233445566778899aabbccddeeff", L"69c4e0d86a7b0430d8cdb78070b4c55a"},
    {L"FIPS-197 C.2", L"000102030405060708090a0b0c0d0e0f1011121314151617", nullptr, 0,
     L"00112233445566778899aabbccddeeff", L"dda97ca4864cdfe06eaf70a0ec0d7191"},
    {L"FIPS-197 C.3", L"000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f", nullptr,
     0, L"00112233445566778899aabbccddeeff", L"8ea2b7ca516745bfeafc49904b496089"},
    {L"SP 800-38A F.1.1 ECB-AES128", L"2b7e151628aed2a6abf7158809cf4f3c", nullptr, 0, Sp800Plain,
     L"3ad77bb40d7a3660a89ecaf32466ef97f5d3d58503b9699de785895a96fdbaaf"
     L"43b1cd7f598ece23881b00e3ed0306887b0c785e27e8ad3f8223207104725dd4"},
    {L"SP 800-38A F.2.1 CBC-AES128", L"2b7e151628aed2a6abf7158809cf4f3c", Sp800Iv, 1, Sp800Plain,
     L"7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"
     L"73bed6b8e3c1743b7116e69e222295163ff1caa1681fac09120eca307586e1a7"},
    {L"SP 800-38A F.2.5 CBC-AES256",
     L"603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4", Sp800Iv, 1, Sp800Plain,
     L"f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"
     L"39f23369a9d9bacfa530e26304231461b2eb05e2c39be9fcda6c19078c6a9d1b"},
    {L"SP 800-38A F.3.13 CFB128-AES128", L"2b7e151628aed2a6abf7158809cf4f3c", Sp800Iv, 2,
     Sp800Plain,
     L"3b3fd92eb72dad20333449f8e83cfb4ac8a64537a0b3a93fcde3cdad9f1ce58b"
     L"26751f67a3cbb140b1808cf187a4f4dfc04b05357c5d1c0eeac4c66f9ff7f2e6"},
};

// Each vector through each kernel both ways, and through the object (the fastest kernel),
// in one call and in pieces of one block (the chain carries over), in place.
TEST(CRijndaelTest, PublishedVectors) {
    for (const Vector& v : Vectors) {
        SCOPED_TRACE(v.name);
        const std::vector<unsigned char> key = Bytes(v.key), plain = Bytes(v.plain),
                                         cipher = Bytes(v.cipher);
        const std::vector<unsigned char> iv = v.iv ? Bytes(v.iv) : std::vector<unsigned char>(16);
        const std::size_t blocks = plain.size() / 16;
        Schedule schedule;
        Expand(key.data(), static_cast<int>(key.size()), 16, schedule);
        for (const Kernel* kernel : Kernels(16)) {
            SCOPED_TRACE(kernel->name);
            std::vector<unsigned char> out(plain.size()), back(plain.size());
            std::vector<unsigned char> chain = iv;
            const ChainLoop encrypt[] = {nullptr, kernel->cbcEncrypt, kernel->cfbEncrypt};
            const ChainLoop decrypt[] = {nullptr, kernel->cbcDecrypt, kernel->cfbDecrypt};
            if (v.mode == 0)
                kernel->ecbEncrypt(schedule, plain.data(), out.data(), blocks);
            else
                encrypt[v.mode](schedule, chain.data(), plain.data(), out.data(), blocks);
            EXPECT_EQ(v.cipher, Hex(out));
            chain = iv;
            if (v.mode == 0)
                kernel->ecbDecrypt(schedule, out.data(), back.data(), blocks);
            else
                decrypt[v.mode](schedule, chain.data(), out.data(), back.data(), blocks);
            EXPECT_EQ(v.plain, Hex(back));
        }

        const auto mode = static_cast<CRijndael::EMode>(v.mode);
        CRijndael rijndael;
        ASSERT_TRUE(
            rijndael.MakeKey(key.data(), v.iv ? iv.data() : nullptr, static_cast<int>(key.size())));
        std::vector<unsigned char> data = plain;
        for (std::size_t at = 0; at < data.size(); at += 16)
            EXPECT_TRUE(rijndael.Encrypt(&data[at], &data[at], 16, mode));
        EXPECT_EQ(v.cipher, Hex(data));
        EXPECT_TRUE(rijndael.ResetChain());
        EXPECT_TRUE(rijndael.Decrypt(data.data(), data.data(), data.size(), mode));
        EXPECT_EQ(v.plain, Hex(data));
        std::vector<unsigned char> single(16);
        EXPECT_TRUE(rijndael.EncryptBlock(plain.data(), single.data()));
        if (v.mode == 0) {
            EXPECT_EQ(std::wstring(v.cipher).substr(0, 32), Hex(single));
        }
    }
}

// Rounds per key and block size; the kernels agree on every size over random data, lengths
// (across their several-blocks-at-once steps) and modes, in place and not.
TEST(CRijndaelTest, KernelsAgreeOnEverySize) {
    std::mt19937 random(7);
    for (int keyBytes : {16, 24, 32})
        for (int blockBytes : {16, 24, 32}) {
            SCOPED_TRACE(std::to_string(keyBytes) + "-byte key, " + std::to_string(blockBytes) +
                         "-byte block");
            CRijndael rijndael;
            std::vector<unsigned char> key(keyBytes);
            for (auto& byte : key)
                byte = static_cast<unsigned char>(random());
            ASSERT_TRUE(rijndael.MakeKey(key.data(), nullptr, keyBytes, blockBytes));
            EXPECT_EQ(std::max(keyBytes, blockBytes) / 4 + 6, rijndael.GetRounds());
            EXPECT_EQ(keyBytes, rijndael.GetKeyLength());
            EXPECT_EQ(blockBytes, rijndael.GetBlockSize());
            Schedule schedule;
            Expand(key.data(), keyBytes, blockBytes, schedule);
            const std::vector<const Kernel*> kernels = Kernels(blockBytes);
            for (std::size_t blocks : {1u, 3u, 4u, 7u, 8u, 9u, 17u}) {
                std::vector<unsigned char> plain(blocks * blockBytes), iv(blockBytes);
                for (auto& byte : plain)
                    byte = static_cast<unsigned char>(random());
                for (auto& byte : iv)
                    byte = static_cast<unsigned char>(random());
                std::vector<std::vector<unsigned char>> results;
                for (const Kernel* kernel : kernels) {
                    std::vector<unsigned char> all, chain = iv;
                    std::vector<unsigned char> out(plain.size());
                    kernel->ecbEncrypt(schedule, plain.data(), out.data(), blocks);
                    all.insert(all.end(), out.begin(), out.end());
                    for (ChainLoop loop : {kernel->cbcEncrypt, kernel->cfbEncrypt}) {
                        chain = iv;
                        loop(schedule, chain.data(), plain.data(), out.data(), blocks);
                        all.insert(all.end(), out.begin(), out.end());
                        all.insert(all.end(), chain.begin(), chain.end());
                    }
                    // Deciphering in place gives the plain text back in every mode.
                    const std::size_t n = plain.size();
                    std::vector<unsigned char> back(all.begin(), all.begin() + n);
                    kernel->ecbDecrypt(schedule, back.data(), back.data(), blocks);
                    EXPECT_EQ(Hex(plain), Hex(back)) << kernel->name << " ECB " << blocks;
                    const ChainLoop decrypt[] = {kernel->cbcDecrypt, kernel->cfbDecrypt};
                    for (int m = 0; m < 2; ++m) {
                        const auto begin = all.begin() + n + m * (n + blockBytes);
                        back.assign(begin, begin + n);
                        chain = iv;
                        decrypt[m](schedule, chain.data(), back.data(), back.data(), blocks);
                        EXPECT_EQ(Hex(plain), Hex(back))
                            << kernel->name << (m ? " CFB " : " CBC ") << blocks;
                        EXPECT_EQ(
                            Hex(std::vector<unsigned char>(begin + n, begin + n + blockBytes)),
                            Hex(chain))
                            << kernel->name << " chain after " << blocks;
                    }
                    results.push_back(all);
                }
                for (std::size_t k = 1; k < results.size(); ++k)
                    EXPECT_EQ(Hex(results[0]), Hex(results[k]))
                        << kernels[k]->name << " " << blocks;
            }
        }
}

// Every misuse gives false and its text; a failed MakeKey leaves no key behind; Reset forgets
// the key.
TEST(CRijndaelTest, MisuseIsReportedWithItsText) {
    const unsigned char key[32] = {1, 2, 3};
    unsigned char data[64] = {};
    CRijndael rijndael;
    EXPECT_STREQ("", rijndael.GetErrorText());
    EXPECT_FALSE(rijndael.Encrypt(data, data, 16));
    EXPECT_STREQ("Object not Initialized", rijndael.GetErrorText());
    EXPECT_FALSE(rijndael.DecryptBlock(data, data));
    EXPECT_EQ(CRijndael::NotInitialized, rijndael.GetError());
    EXPECT_FALSE(rijndael.ResetChain());

    const std::pair<int, int> sizes[] = {{0, 16}, {15, 16}, {64, 16}, {16, 0}, {16, 20}, {32, 64}};
    const char* const texts[] = {"Empty key",
                                 "Incorrect key length",
                                 "Incorrect key length",
                                 "Incorrect block length",
                                 "Incorrect block length",
                                 "Incorrect block length"};
    for (std::size_t i = 0; i < std::size(sizes); ++i) {
        EXPECT_FALSE(rijndael.MakeKey(key, nullptr, sizes[i].first, sizes[i].second)) << i;
        EXPECT_STREQ(texts[i], rijndael.GetErrorText()) << i;
    }
    EXPECT_FALSE(rijndael.MakeKey(nullptr, nullptr, 16, 16));
    EXPECT_STREQ("Empty key", rijndael.GetErrorText());

    ASSERT_TRUE(rijndael.MakeKey(key, nullptr, 32, 24));
    EXPECT_EQ(CRijndael::NoError, rijndael.GetError());
    EXPECT_FALSE(rijndael.Encrypt(data, data, 16, CRijndael::CBC));
    EXPECT_STREQ("Data not multiple of Block Size", rijndael.GetErrorText());
    EXPECT_FALSE(rijndael.Encrypt(data, data, 24, static_cast<CRijndael::EMode>(3)));
    EXPECT_STREQ("Incorrect mode", rijndael.GetErrorText());
    EXPECT_FALSE(rijndael.Decrypt(nullptr, data, 24));
    EXPECT_STREQ("Null buffer", rijndael.GetErrorText());
    EXPECT_TRUE(rijndael.Encrypt(nullptr, nullptr, 0, CRijndael::CFB));
    EXPECT_STREQ("", rijndael.GetErrorText());

    // A failed MakeKey drops the key it had.
    EXPECT_FALSE(rijndael.MakeKey(key, nullptr, 17));
    EXPECT_FALSE(rijndael.IsInitialized());
    EXPECT_FALSE(rijndael.EncryptBlock(data, data));
    ASSERT_TRUE(rijndael.MakeKey(key, nullptr));
    rijndael.Reset();
    EXPECT_EQ(0, rijndael.GetKeyLength());
    EXPECT_EQ(0, rijndael.GetRounds());
    EXPECT_FALSE(rijndael.EncryptBlock(data, data));
}

} // namespace
