// The CRC block loops against the bit-at-a-time definition. The input's first 12 bytes choose
// the width (byte 0, bit 0: 32-bit reflected, else 16-bit), the loop (byte 0, bits 1 and up,
// modulo 3: portable, 128-bit, 512-bit; the fastest the processor runs when it lacks that
// one), where the data starts after a 64-byte boundary (byte 1), where it is split into two
// calls (bytes 2 and 3), the polynomial (bytes 4 to 7) and the start value (bytes 8 to 11,
// little-endian); the rest is the data. The data ends where its allocation ends, so that the
// sanitizers see a read past it.
#include <cstdint>
#include <cstring>
#include <new>

#include "CrcBitwise.h"
#include "CrcKernels.h"
#include "FuzzSupport.h"

using namespace KelBase::Crc;

namespace {

const std::size_t HeaderBytes = 12;

std::uint32_t Read32(const std::uint8_t* p) {
    return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// The loop in one call and in two, from the tables of the last polynomial (built again only
// when it changes), against the definition.
template <class Reg, class Loop>
void Check(Loop (*loopOf)(LoopKind), Reg (*bitwise)(Reg, Reg, const unsigned char*, std::size_t),
           int kind, Reg polynomial, Reg start, const unsigned char* data, std::size_t length,
           std::size_t split) {
    static Reg tables[8][256];
    static std::uint64_t constants[ConstantCount];
    static bool built = false;
    static Reg builtFor = 0;
    if (!built || builtFor != polynomial) {
        BuildTables(polynomial, tables, constants);
        built = true;
        builtFor = polynomial;
    }
    Loop loop = loopOf(static_cast<LoopKind>(kind));
    for (; !loop; --kind)
        loop = loopOf(static_cast<LoopKind>(kind - 1));
    const Reg expected = bitwise(polynomial, start, data, length);
    FUZZ_CHECK(loop(start, data, length, tables, constants) == expected);
    const Reg first = loop(start, data, split, tables, constants);
    FUZZ_CHECK(loop(first, data + split, length - split, tables, constants) == expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* input, std::size_t size) {
    if (size < HeaderBytes)
        return 0;
    const int kind = (input[0] >> 1) % 3;
    const std::size_t offset = input[1] % 64;
    const std::size_t length = size - HeaderBytes;
    const std::size_t split = (input[2] | input[3] << 8) % (length + 1);
    const std::uint32_t polynomial = Read32(input + 4), start = Read32(input + 8);
    const std::align_val_t alignment{64};
    auto* block = static_cast<unsigned char*>(::operator new(offset + length, alignment));
    std::memcpy(block + offset, input + HeaderBytes, length);
    if (input[0] & 1)
        Check<std::uint32_t>(Crc32LoopOf, BitwiseCrc32, kind, polynomial, start, block + offset,
                             length, split);
    else
        Check<std::uint16_t>(Crc16LoopOf, BitwiseCrc16, kind,
                             static_cast<std::uint16_t>(polynomial),
                             static_cast<std::uint16_t>(start), block + offset, length, split);
    ::operator delete(block, alignment);
    return 0;
}
