#pragma once
// The two CRCs bit at a time, as they are defined: the reference of the loop tests and of the
// differential fuzz target.
#include <cstddef>
#include <cstdint>

// Reflected: the register shifts right, the polynomial in reflected form.
inline std::uint32_t BitwiseCrc32(std::uint32_t polynomial, std::uint32_t crc,
                                  const unsigned char* data, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1u) ? (crc >> 1) ^ polynomial : crc >> 1;
    }
    return crc;
}

// Most significant bit first: the register shifts left.
inline std::uint16_t BitwiseCrc16(std::uint16_t polynomial, std::uint16_t crc,
                                  const unsigned char* data, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        crc = static_cast<std::uint16_t>(crc ^ (data[i] << 8));
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint16_t>((crc & 0x8000u) ? (crc << 1) ^ polynomial : crc << 1);
    }
    return crc;
}
