// CRijndael and both cipher kernels against the published AES vectors (FIPS-197 appendix C,
// NIST SP 800-38A), and the object's chain, in-place and misuse behaviour.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "CRijndael.h"
#include "RijndaelKernels.h"
#include "TestBytes.h"

using namespace KelBase::Rijndael;

namespace {

// The kernels this processor runs.
std::vector<const Kernel*> Kernels(int blockBytes) {
    std::vector<const Kernel*> kernels = {&Portable(blockBytes)};
    if (AesNi(blockBytes))
        kernels.push_back(AesNi(blockBytes));
    return kernels;
}

// The blocks of `data` through one loop of the kernel (mode 0 ECB, 1 CBC, 2 CFB): enciphered
// into another buffer, or deciphered in place. `chain` goes on as for the next call.
Bytes Cipher(const Kernel& kernel, int mode, bool encrypt, const Schedule& schedule, Bytes& chain,
             Bytes data) {
    const std::size_t blocks = data.size() / schedule.blockBytes;
    Bytes out(data.size());
    unsigned char* const to = encrypt ? out.data() : data.data();
    const ChainLoop chained[] = {nullptr, encrypt ? kernel.cbcEncrypt : kernel.cbcDecrypt,
                                 encrypt ? kernel.cfbEncrypt : kernel.cfbDecrypt};
    if (mode == 0)
        (encrypt ? kernel.ecbEncrypt : kernel.ecbDecrypt)(schedule, data.data(), to, blocks);
    else
        chained[mode](schedule, chain.data(), data.data(), to, blocks);
    return encrypt ? out : data;
}

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
    {L"SP 800-38A F.1.1 ECB-AES128", Sp800::Key, nullptr, 0, Sp800::Plain, Sp800::Ecb},
    {L"SP 800-38A F.2.1 CBC-AES128", Sp800::Key, Sp800::Iv, 1, Sp800::Plain, Sp800::Cbc},
    {L"SP 800-38A F.2.5 CBC-AES256",
     L"603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4", Sp800::Iv, 1,
     Sp800::Plain,
     L"f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"
     L"39f23369a9d9bacfa530e26304231461b2eb05e2c39be9fcda6c19078c6a9d1b"},
    {L"SP 800-38A F.3.13 CFB128-AES128", Sp800::Key, Sp800::Iv, 2, Sp800::Plain, Sp800::Cfb},
};

// Each vector through each kernel both ways, and through the object (the fastest kernel),
// in one call and in pieces of one block (the chain carries over), in place.
TEST(CRijndaelTest, PublishedVectors) {
    for (const Vector& v : Vectors) {
        SCOPED_TRACE(v.name);
        const Bytes key = FromHex(v.key), plain = FromHex(v.plain);
        const Bytes iv = v.iv ? FromHex(v.iv) : Bytes(16);
        Schedule schedule;
        Expand(key.data(), static_cast<int>(key.size()), 16, schedule);
        for (const Kernel* kernel : Kernels(16)) {
            SCOPED_TRACE(kernel->name);
            Bytes chain = iv;
            const Bytes cipher = Cipher(*kernel, v.mode, true, schedule, chain, plain);
            EXPECT_EQ(v.cipher, Hex(cipher));
            chain = iv;
            EXPECT_EQ(v.plain, Hex(Cipher(*kernel, v.mode, false, schedule, chain, cipher)));
        }

        const auto mode = static_cast<CRijndael::EMode>(v.mode);
        CRijndael rijndael;
        ASSERT_TRUE(
            rijndael.MakeKey(key.data(), v.iv ? iv.data() : nullptr, static_cast<int>(key.size())));
        Bytes data = plain;
        for (std::size_t at = 0; at < data.size(); at += 16)
            EXPECT_TRUE(rijndael.Encrypt(&data[at], &data[at], 16, mode));
        EXPECT_EQ(v.cipher, Hex(data));
        EXPECT_TRUE(rijndael.ResetChain());
        EXPECT_TRUE(rijndael.Decrypt(data.data(), data.data(), data.size(), mode));
        EXPECT_EQ(v.plain, Hex(data));
        Bytes single(16);
        EXPECT_TRUE(rijndael.EncryptBlock(plain.data(), single.data()));
        if (v.mode == 0) {
            EXPECT_EQ(std::wstring(v.cipher).substr(0, 32), Hex(single));
        }
    }
}

// Rounds per key and block size; the kernels agree on every size over random data, lengths
// (across their several-blocks-at-once steps) and modes, and decipher in place what they
// enciphered, ending on the same chain.
TEST(CRijndaelTest, KernelsAgreeOnEverySize) {
    std::mt19937 random(7);
    for (int keyBytes : {16, 24, 32})
        for (int blockBytes : {16, 24, 32}) {
            SCOPED_TRACE(std::to_string(keyBytes) + "-byte key, " + std::to_string(blockBytes) +
                         "-byte block");
            const Bytes key = RandomBytes(random, keyBytes);
            CRijndael rijndael;
            ASSERT_TRUE(rijndael.MakeKey(key.data(), nullptr, keyBytes, blockBytes));
            EXPECT_EQ(std::max(keyBytes, blockBytes) / 4 + 6, rijndael.GetRounds());
            EXPECT_EQ(keyBytes, rijndael.GetKeyLength());
            EXPECT_EQ(blockBytes, rijndael.GetBlockSize());
            Schedule schedule;
            Expand(key.data(), keyBytes, blockBytes, schedule);
            const std::vector<const Kernel*> kernels = Kernels(blockBytes);
            for (std::size_t blocks : {1u, 3u, 4u, 7u, 8u, 9u, 17u})
                for (int mode = 0; mode < 3; ++mode) {
                    SCOPED_TRACE("mode " + std::to_string(mode) + ", " + std::to_string(blocks) +
                                 " blocks");
                    const Bytes plain = RandomBytes(random, blocks * blockBytes),
                                iv = RandomBytes(random, blockBytes);
                    std::vector<Bytes> results; // each kernel's cipher text and chain after it
                    for (const Kernel* kernel : kernels) {
                        Bytes chain = iv, back = iv;
                        Bytes cipher = Cipher(*kernel, mode, true, schedule, chain, plain);
                        EXPECT_EQ(Hex(plain),
                                  Hex(Cipher(*kernel, mode, false, schedule, back, cipher)))
                            << kernel->name;
                        EXPECT_EQ(Hex(chain), Hex(back)) << kernel->name;
                        cipher.insert(cipher.end(), chain.begin(), chain.end());
                        results.push_back(cipher);
                    }
                    for (std::size_t k = 1; k < results.size(); ++k)
                        EXPECT_EQ(Hex(results[0]), Hex(results[k])) << kernels[k]->name;
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
