// AES-128 (ECB both ways, CBC both ways, CFB), the wider Rijndael blocks and SHA-1 on one
// 64 MiB buffer against OpenSSL's EVP interface in the same run. CBC and CFB enciphering are
// serial (each block waits for the one before), so they are reported, not held to a goal.
#include <openssl/evp.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "BenchTiming.h"
#include "CRijndael.h"
#include "CSHA1.h"
#include "RijndaelKernels.h"

using KelBench::Candidate;

namespace {

const std::size_t BufferBytes = 64u << 20;
const int Rounds = 9;

std::uint32_t First(const std::vector<unsigned char>& data) {
    return data[0] | data[data.size() - 1] << 8;
}

// OpenSSL enciphering or deciphering the whole buffer without padding.
std::uint32_t OpenSsl(const EVP_CIPHER* cipher, bool encrypting, const unsigned char* key,
                      const unsigned char* iv, const std::vector<unsigned char>& in,
                      std::vector<unsigned char>& out) {
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    EVP_CipherInit_ex(context, cipher, nullptr, key, iv, encrypting ? 1 : 0);
    EVP_CIPHER_CTX_set_padding(context, 0);
    int written = 0;
    EVP_CipherUpdate(context, out.data(), &written, in.data(), static_cast<int>(in.size()));
    EVP_CIPHER_CTX_free(context);
    return First(out);
}

} // namespace

int main() {
    std::vector<unsigned char> data(BufferBytes), out(BufferBytes);
    std::mt19937_64 random(64);
    for (auto& byte : data)
        byte = static_cast<unsigned char>(random());
    const unsigned char key[32] = {0x2b, 0x7e, 0x15, 0x16, 0x28, 0xae, 0xd2, 0xa6,
                                   0xab, 0xf7, 0x15, 0x88, 0x09, 0xcf, 0x4f, 0x3c};
    const unsigned char iv[32] = {};
    CRijndael aes, wide;
    aes.MakeKey(key, iv, 16, 16);
    wide.MakeKey(key, iv, 32, 32);
    KelBase::Rijndael::Schedule schedule;
    KelBase::Rijndael::Expand(key, 16, 16, schedule);
    const std::size_t portableBytes = 1u << 20;

    // Ours and OpenSSL's, in pairs.
    const auto ours = [&](bool encrypting, CRijndael::EMode mode) {
        return [&, encrypting, mode] {
            aes.ResetChain();
            if (encrypting)
                aes.Encrypt(data.data(), out.data(), data.size(), mode);
            else
                aes.Decrypt(data.data(), out.data(), data.size(), mode);
            return First(out);
        };
    };
    const auto theirs = [&](const EVP_CIPHER* cipher, bool encrypting) {
        return [&, cipher, encrypting] { return OpenSsl(cipher, encrypting, key, iv, data, out); };
    };
    std::vector<Candidate> candidates = {
        {"CRijndael AES-128 ECB encrypt", ours(true, CRijndael::ECB)},
        {"OpenSSL AES-128 ECB encrypt", theirs(EVP_aes_128_ecb(), true)},
        {"CRijndael AES-128 ECB decrypt", ours(false, CRijndael::ECB)},
        {"OpenSSL AES-128 ECB decrypt", theirs(EVP_aes_128_ecb(), false)},
        {"CRijndael AES-128 CBC decrypt", ours(false, CRijndael::CBC)},
        {"OpenSSL AES-128 CBC decrypt", theirs(EVP_aes_128_cbc(), false)},
        {"CRijndael AES-128 CBC encrypt", ours(true, CRijndael::CBC)},
        {"OpenSSL AES-128 CBC encrypt", theirs(EVP_aes_128_cbc(), true)},
        {"CRijndael AES-128 CFB decrypt", ours(false, CRijndael::CFB)},
        {"OpenSSL AES-128 CFB decrypt", theirs(EVP_aes_128_cfb128(), false)},
        {"CSHA1",
         [&] {
             CSHA1 sha1;
             sha1.Update(data.data(), data.size());
             sha1.Final();
             unsigned char digest[20];
             sha1.GetHash(digest);
             return std::uint32_t{digest[0]};
         }},
        {"OpenSSL SHA-1",
         [&] {
             unsigned char digest[EVP_MAX_MD_SIZE];
             unsigned int length = 0;
             EVP_Digest(data.data(), data.size(), digest, &length, EVP_sha1(), nullptr);
             return std::uint32_t{digest[0]};
         }},
        {"CRijndael 256-bit key and block ECB",
         [&] {
             wide.Encrypt(data.data(), out.data(), data.size(), CRijndael::ECB);
             return First(out);
         }},
        {"OpenSSL AES-256 ECB encrypt", theirs(EVP_aes_256_ecb(), true)},
        // The portable kernel on 1 MiB only, so that it does not dominate the run.
        {"portable AES-128 ECB encrypt (1 MiB)",
         [&] {
             KelBase::Rijndael::Portable(16).ecbEncrypt(schedule, data.data(), out.data(),
                                                        portableBytes / 16);
             return First(out);
         }},
    };
    std::printf("Rijndael and SHA-1 over %zu MiB, best of %d rounds; kernel here: %s\n",
                BufferBytes >> 20, Rounds, KelBase::Rijndael::Best(16).name);
    KelBench::MeasureInTurns(candidates, Rounds);
    for (std::size_t i = 0; i + 1 < 14; i += 2) {
        // CBC enciphering is serial; no AES has the wide block, so AES-256 is only a yardstick.
        const bool goal = i != 6 && i != 12;
        KelBench::Speedup(candidates[i], candidates[i + 1], goal ? 0.8 : 0.0, BufferBytes);
    }
    const double portableMBs = portableBytes / candidates[14].ns * 1000.0;
    std::printf("%-40s %6.1f MB/s %8.4f x %s\n", candidates[14].name, portableMBs,
                portableMBs / (BufferBytes / candidates[1].ns * 1000.0), candidates[1].name);
    return 0;
}
