// Every block loop against the bit-at-a-time definition of the two CRCs, over many
// polynomials, start values, lengths and alignments. The carry-less loops run only where the
// processor has them; the test records which loops it checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "CrcKernels.h"

using namespace KelBase::Crc;

namespace {

std::uint32_t BitwiseCrc32(std::uint32_t polynomial, std::uint32_t crc, const unsigned char* data,
                           std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1u) ? (crc >> 1) ^ polynomial : crc >> 1;
    }
    return crc;
}

std::uint16_t BitwiseCrc16(std::uint16_t polynomial, std::uint16_t crc, const unsigned char* data,
                           std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        crc = static_cast<std::uint16_t>(crc ^ (data[i] << 8));
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<std::uint16_t>((crc & 0x8000u) ? (crc << 1) ^ polynomial : crc << 1);
    }
    return crc;
}

// Each loop the processor runs, for standard, degenerate and random polynomials, from a random
// start at a random misalignment. Each block ends where its allocation ends, so that the
// sanitizers of the native build see a read past the end.
template <class Reg, class Loop>
void Check(std::vector<Reg> polynomials,
           Reg (*bitwise)(Reg, Reg, const unsigned char*, std::size_t), Loop portable, Loop clmul,
           Loop wide, Loop best) {
    // Every length below five 256-byte steps, so that each carry-less loop meets every count of
    // remaining 64-byte lanes, 16-byte lanes and bytes after its main loop; then lengths around
    // the stripes of the portable loop and the region groups of the carry-less ones.
    std::vector<std::size_t> lengths(5 * 256);
    std::iota(lengths.begin(), lengths.end(), 0);
    const std::size_t stripes = Stripes * StripeBytes, regions = 4 * RegionBytes + 256;
    lengths.insert(lengths.end(), {stripes - 1, stripes, 2 * stripes + 9, regions - 1, regions,
                                   2 * regions + 4 * 256 + 77});
    std::mt19937_64 random(20240611);
    std::vector<unsigned char> data(lengths.back() + 64);
    for (auto& byte : data)
        byte = static_cast<unsigned char>(random());
    for (int i = 0; i < 10; ++i)
        polynomials.push_back(static_cast<Reg>(random()));
    const std::pair<const char*, Loop> loops[] = {
        {"portable", portable}, {"clmul", clmul}, {"wide", wide}, {"best", best}};
    std::string checked;
    for (const auto& loop : loops)
        checked += loop.second ? (checked.empty() ? "" : " ") + std::string(loop.first) : "";
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
            for (const auto& loop : loops)
                if (loop.second) {
                    ASSERT_EQ(expected, loop.second(start, bytes, length, tables, constants))
                        << loop.first << " polynomial " << polynomial << " length " << length
                        << " offset " << offset;
                }
        }
    }
}

TEST(CrcKernelTest, Crc32LoopsMatchTheBitwiseDefinition) {
    Check<std::uint32_t>({0xEDB88320, 0x82F63B78, 0, 1, 0x80000000, 0xFFFFFFFF}, BitwiseCrc32,
                         Crc32Slice8, Crc32Clmul(), Crc32Wide(), Crc32Best());
}

TEST(CrcKernelTest, Crc16LoopsMatchTheBitwiseDefinition) {
    Check<std::uint16_t>({0x1021, 0x8005, 0x3D65, 0, 1, 0x8000, 0xFFFF}, BitwiseCrc16, Crc16Slice8,
                         Crc16Clmul(), Crc16Wide(), Crc16Best());
}

} // namespace
