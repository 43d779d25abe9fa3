#pragma once
// The system's SHA-1 (CNG), the reference the tests hold CSHA1 and keltool sha1 to.
#include <windows.h>

#include <bcrypt.h>

#include <array>
#include <cstddef>

// The digest of `size` bytes; all zeros when CNG fails, which no real digest is.
inline std::array<unsigned char, 20> SystemSha1(const void* data, std::size_t size) {
    std::array<unsigned char, 20> digest{};
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    if (BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA1_ALGORITHM, nullptr, 0) == 0) {
        if (BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) == 0) {
            BCryptHashData(hash, static_cast<PUCHAR>(const_cast<void*>(data)),
                           static_cast<ULONG>(size), 0);
            BCryptFinishHash(hash, digest.data(), static_cast<ULONG>(digest.size()), 0);
            BCryptDestroyHash(hash);
        }
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    return digest;
}
