#pragma once
// Bytes for the checksum and cipher tests: random ones, hexadecimal text both ways, and the
// SP 800-38A example that the cipher tests and keltool's share.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StdBase.h"

using Bytes = std::vector<unsigned char>;

template <class Engine> Bytes RandomBytes(Engine& random, std::size_t size) {
    Bytes bytes(size);
    for (auto& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

inline std::wstring Hex(const unsigned char* data, std::size_t size) {
    return StdBase::ConvertBytesToHex(data, size);
}

inline std::wstring Hex(const Bytes& bytes) {
    return Hex(bytes.data(), bytes.size());
}

inline Bytes FromHex(const wchar_t* hex) {
    Bytes bytes;
    EXPECT_TRUE(StdBase::ConvertHexToBytes(hex, bytes)) << hex;
    return bytes;
}

// NIST SP 800-38A, appendix F: four blocks under one AES-128 key, in three modes.
namespace Sp800 {
inline const wchar_t* const Plain =
    L"6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"
    L"30c81c46a35ce411e5fbc1191a0a52eff69f2445df4f9b17ad2b417be66c3710";
inline const wchar_t* const Key = L"2b7e151628aed2a6abf7158809cf4f3c";
inline const wchar_t* const Iv = L"000102030405060708090a0b0c0d0e0f";
inline const wchar_t* const Ecb = // F.1.1
    L"3ad77bb40d7a3660a89ecaf32466ef97f5d3d58503b9699de785895a96fdbaaf"
    L"43b1cd7f598ece23881b00e3ed0306887b0c785e27e8ad3f8223207104725dd4";
inline const wchar_t* const Cbc = // F.2.1
    L"7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"
    L"73bed6b8e3c1743b7116e69e222295163ff1caa1681fac09120eca307586e1a7";
inline const wchar_t* const Cfb = // F.3.13
    L"3b3fd92eb72dad20333449f8e83cfb4ac8a64537a0b3a93fcde3cdad9f1ce58b"
    L"26751f67a3cbb140b1808cf187a4f4dfc04b05357c5d1c0eeac4c66f9ff7f2e6";
} // namespace Sp800
