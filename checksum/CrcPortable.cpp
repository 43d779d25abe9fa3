#include "CrcArithmetic.h"

namespace KelBase {
namespace Crc {

std::uint32_t Crc32Slice8(std::uint32_t crc, const unsigned char* data, std::size_t length,
                          const std::uint32_t (*tables)[256], const std::uint64_t* constants) {
    return SliceLoop<Reflected32>(crc, data, length, tables, constants);
}

std::uint16_t Crc16Slice8(std::uint16_t crc, const unsigned char* data, std::size_t length,
                          const std::uint16_t (*tables)[256], const std::uint64_t* constants) {
    return SliceLoop<Msb16>(crc, data, length, tables, constants);
}

} // namespace Crc
} // namespace KelBase
