// Every block loop against the bit-at-a-time definition of the two CRCs, over many
// polynomials, start values, lengths and alignments, and the CRC classes through the loop
// they select. The carry-less loops run only where the processor has them; the tests record
// which loops they checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "COXCheckBase.h"
#include "CrcBitwise.h"
#include "CrcKernels.h"
#include "TestBytes.h"

using namespace KelBase::Crc;

namespace {

const LoopKind Kinds[] = {LoopKind::Portable, LoopKind::Clmul, LoopKind::Wide};

// Each loop the processor runs, for standard, degenerate and random polynomials, from a random
// start at a random misalignment. Each block ends where its allocation ends, so that the
// sanitizers of the native build see a read past the end.
template <class Reg, class Loop>
void Check(std::vector<Reg> polynomials,
           Reg (*bitwise)(Reg, Reg, const unsigned char*, std::size_t), Loop (*loopOf)(LoopKind)) {
    // Every length below five 256-byte steps, so that each carry-less loop meets every count of
    // remaining 64-byte lanes, 16-byte lanes and bytes after its main loop; then lengths around
    // the stripes of the portable loop and the region groups of the carry-less ones.
    std::vector<std::size_t> lengths(5 * 256);
    std::iota(lengths.begin(), lengths.end(), 0);
    const std::size_t stripes = Stripes * StripeBytes, regions = 4 * RegionBytes + 256;
    lengths.insert(lengths.end(), {stripes - 1, stripes, 2 * stripes + 9, regions - 1, regions,
                                   2 * regions + 4 * 256 + 77});
    std::mt19937_64 random(20240611);
    const Bytes data = RandomBytes(random, lengths.back() + 64);
    for (int i = 0; i < 10; ++i)
        polynomials.push_back(static_cast<Reg>(random()));
    std::string checked;
    for (LoopKind kind : Kinds)
        checked += loopOf(kind) ? (checked.empty() ? "" : " ") + std::string(LoopName(kind)) : "";
    ::testing::Test::RecordProperty("loops", checked);

    static Reg tables[8][256];
    std::uint64_t constants[ConstantCount];
    for (Reg polynomial : polynomials) {
        BuildTables(polynomial, tables, constants);
        for (std::size_t length : lengths) {
            const std::size_t offset = random() % 64;
            const Reg start = static_cast<Reg>(random());
            const std::vector<unsigned char> block(data.begin(), data.begin() + offset + length);
            const unsigned char* bytes = block.data() + offset;
            const Reg expected = bitwise(polynomial, start, bytes, length);
            for (LoopKind kind : Kinds)
                if (const Loop loop = loopOf(kind)) {
                    ASSERT_EQ(expected, loop(start, bytes, length, tables, constants))
                        << LoopName(kind) << " polynomial " << polynomial << " length " << length
                        << " offset " << offset;
                }
        }
    }
}

TEST(CrcKernelTest, Crc32LoopsMatchTheBitwiseDefinition) {
    Check<std::uint32_t>({0xEDB88320, 0x82F63B78, 0, 1, 0x80000000, 0xFFFFFFFF}, BitwiseCrc32,
                         Crc32LoopOf);
}

TEST(CrcKernelTest, Crc16LoopsMatchTheBitwiseDefinition) {
    Check<std::uint16_t>({0x1021, 0x8005, 0x8BB7, 0x3D65, 0, 1, 0x8000, 0xFFFF}, BitwiseCrc16,
                         Crc16LoopOf);
}

// The classes run the loop KEL_CRC_LOOP names (the ctest entries test_checksum_loop_* set it),
// or the fastest one without it; either way they give the bitwise results over lengths that
// reach every part of each loop.
TEST(CrcKernelTest, ClassesRunTheSelectedLoopEndToEnd) {
    const char* forced = std::getenv("KEL_CRC_LOOP");
    const LoopKind selected = SelectedLoop();
    ::testing::Test::RecordProperty("loop", LoopName(selected));
    for (LoopKind kind : Kinds) {
        if (forced && std::string(forced) == LoopName(kind) && !Crc32LoopOf(kind))
            GTEST_SKIP() << "this processor cannot run the " << forced << " loop";
        if (!forced && kind > selected) {
            EXPECT_EQ(nullptr, Crc32LoopOf(kind)) << LoopName(kind);
        }
    }
    if (forced) {
        EXPECT_STREQ(forced, LoopName(selected));
    }

    std::mt19937_64 random(7);
    Bytes data = RandomBytes(random, 4 * RegionBytes + 1000); // CalculateBlock takes void*
    std::vector<DWORD> lengths(600);
    std::iota(lengths.begin(), lengths.end(), 0);
    lengths.insert(lengths.end(), {1000, 4099, static_cast<DWORD>(data.size())});
    COXCRC32 crc32(0xEDB88320), castagnoli(0x82F63B78);
    COXCRC16 crc16(0x1021), t10dif(0x8BB7);
    const std::pair<COXCRC32*, DWORD> wide[] = {{&crc32, 0xEDB88320}, {&castagnoli, 0x82F63B78}};
    const std::pair<COXCRC16*, std::uint16_t> narrow[] = {{&crc16, 0x1021}, {&t10dif, 0x8BB7}};
    for (DWORD length : lengths) {
        const DWORD start = static_cast<DWORD>(random());
        const std::uint16_t start16 = static_cast<std::uint16_t>(start);
        for (const auto& [crc, polynomial] : wide)
            EXPECT_EQ(BitwiseCrc32(polynomial, start, data.data(), length),
                      crc->CalculateBlock(data.data(), length, start))
                << std::hex << polynomial << std::dec << " length " << length;
        for (const auto& [crc, polynomial] : narrow)
            EXPECT_EQ(BitwiseCrc16(polynomial, start16, data.data(), length),
                      crc->CalculateBlock(data.data(), length, start16))
                << std::hex << polynomial << std::dec << " length " << length;
    }
}

} // namespace
