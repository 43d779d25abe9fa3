// The cryptography family against other implementations on random input: Rijndael of every
// key and block size (AES among them) in every mode against libmcrypt, SHA-1 and RC4 against
// OpenSSL.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <gtest/gtest.h>

#include <mcrypt.h>
#include <openssl/rc4.h>
#include <openssl/sha.h>

#include <random>
#include <string>
#include <vector>

#include "CRijndael.h"
#include "CSHA1.h"
#include "RC4.h"
#include "TestBytes.h"

namespace {

// libmcrypt's "ncfb" is cipher feedback over whole blocks, as CRijndael's CFB.
Bytes Mcrypt(int blockBytes, const char* mode, const Bytes& key, Bytes iv, const Bytes& plain) {
    const std::string algorithm = "rijndael-" + std::to_string(8 * blockBytes);
    MCRYPT module = mcrypt_module_open(const_cast<char*>(algorithm.c_str()), nullptr,
                                       const_cast<char*>(mode), nullptr);
    EXPECT_NE(nullptr, static_cast<void*>(module)) << algorithm << " " << mode;
    Bytes cipher = plain;
    EXPECT_EQ(0, mcrypt_generic_init(module, const_cast<unsigned char*>(key.data()),
                                     static_cast<int>(key.size()), iv.data()));
    if (!cipher.empty())
        mcrypt_generic(module, cipher.data(), static_cast<int>(cipher.size()));
    mcrypt_generic_deinit(module);
    mcrypt_module_close(module);
    return cipher;
}

TEST(CryptoReference, RijndaelAgainstLibmcrypt) {
    std::mt19937 random(2024);
    const std::pair<CRijndael::EMode, const char*> modes[] = {
        {CRijndael::ECB, "ecb"}, {CRijndael::CBC, "cbc"}, {CRijndael::CFB, "ncfb"}};
    for (int keyBytes : {16, 24, 32})
        for (int blockBytes : {16, 24, 32})
            for (const auto& [mode, name] : modes)
                for (int round = 0; round < 12; ++round) {
                    const Bytes key = RandomBytes(random, keyBytes),
                                iv = RandomBytes(random, blockBytes);
                    const Bytes plain = RandomBytes(random, blockBytes * (random() % 40));
                    SCOPED_TRACE(std::to_string(keyBytes) + "/" + std::to_string(blockBytes) + " " +
                                 name + " " + std::to_string(plain.size()) + " bytes");
                    CRijndael rijndael;
                    ASSERT_TRUE(rijndael.MakeKey(key.data(), iv.data(), keyBytes, blockBytes));
                    Bytes cipher(plain.size());
                    ASSERT_TRUE(rijndael.Encrypt(plain.data(), cipher.data(), plain.size(), mode));
                    EXPECT_EQ(Hex(Mcrypt(blockBytes, name, key, iv, plain)), Hex(cipher));
                    rijndael.ResetChain();
                    ASSERT_TRUE(
                        rijndael.Decrypt(cipher.data(), cipher.data(), cipher.size(), mode));
                    EXPECT_EQ(Hex(plain), Hex(cipher));
                }
}

TEST(CryptoReference, Sha1AndRc4AgainstOpenSsl) {
    std::mt19937 random(31);
    for (int round = 0; round < 200; ++round) {
        const Bytes message = RandomBytes(random, random() % (round < 150 ? 300 : 100000));
        SCOPED_TRACE(message.size());
        Bytes expected(SHA_DIGEST_LENGTH), digest(CSHA1::DIGEST_SIZE);
        SHA1(message.data(), message.size(), expected.data());
        CSHA1 sha1;
        sha1.Update(message.data(), message.size());
        sha1.Final();
        sha1.GetHash(digest.data());
        EXPECT_EQ(Hex(expected), Hex(digest));

        const Bytes key = RandomBytes(random, 1 + random() % 300);
        RC4_KEY theirs;
        RC4_set_key(&theirs, static_cast<int>(key.size()), key.data());
        Bytes theirStream(message.size()), ourStream = message;
        if (!message.empty())
            RC4(&theirs, message.size(), message.data(), theirStream.data());
        rc4_key ours;
        prepare_key(key.data(), key.size(), &ours);
        rc4(ourStream.data(), ourStream.size(), &ours);
        EXPECT_EQ(Hex(theirStream), Hex(ourStream)) << key.size() << "-byte key";
    }
}

} // namespace
