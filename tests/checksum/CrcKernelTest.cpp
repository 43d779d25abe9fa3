// Every block loop against the bit-at-a-time definition of the two CRCs, over many
// polynomials, start values, lengths and alignments. The carry-less loops run only where the
// processor has them; the test records which loops it checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
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

template <class Loop> struct NamedLoop {
    const char* name;
    Loop loop;
};

template <class Loop>
std::vector<NamedLoop<Loop>> Available(Loop portable, Loop clmul, Loop wide, Loop best) {
    std::vector<NamedLoop<Loop>> loops = {{"portable", portable}, {"best", best}};
    if (clmul)
        loops.push_back({"clmul", clmul});
    if (wide)
        loops.push_back({"wide", wide});
    return loops;
}

template <class Loop> std::string Names(const std::vector<NamedLoop<Loop>>& loops) {
    std::string names;
    for (const auto& loop : loops)
        names += std::string(names.empty() ? "" : " ") + loop.name;
    return names;
}

// Every length below five 256-byte steps, so that each carry-less loop meets every count of
// remaining 64-byte lanes, 16-byte lanes and bytes after its main loop; then lengths around
// the stripes of the portable loop.
std::vector<std::size_t> Lengths() {
    std::vector<std::size_t> lengths;
    for (std::size_t n = 0; n < 5 * 256; ++n)
        lengths.push_back(n);
    for (std::size_t n :
         {Stripes * StripeBytes - 1, Stripes * StripeBytes, 2 * Stripes * StripeBytes + 9})
        lengths.push_back(n);
    return lengths;
}

// Around the threshold of the carry-less regions, and two groups of regions with a tail.
const std::size_t RegionGroup = 4 * RegionBytes + 256;
const std::size_t LongLengths[] = {RegionGroup - 1, RegionGroup, 2 * RegionGroup + 4 * 256 + 77};
const std::size_t LongLength = LongLengths[2];

class CrcKernelTest : public ::testing::Test {
protected:
    CrcKernelTest() : m_data(LongLength + 64) {
        for (auto& byte : m_data)
            byte = static_cast<unsigned char>(m_random());
    }

    // Standard polynomials, the degenerate ones and random ones.
    template <class Reg> std::vector<Reg> Polynomials(std::vector<Reg> fixed, int randomCount) {
        for (int i = 0; i < randomCount; ++i)
            fixed.push_back(static_cast<Reg>(m_random()));
        return fixed;
    }

    // Every loop against the bitwise definition, for each polynomial and length, from a random
    // start at a random misalignment. Each block ends where its allocation ends, so that the
    // sanitizers of the native build see a read past the end.
    template <class Reg, class Loop>
    void Check(const std::vector<NamedLoop<Loop>>& loops, const std::vector<Reg>& polynomials,
               Reg (*bitwise)(Reg, Reg, const unsigned char*, std::size_t),
               const std::vector<std::size_t>& lengths) {
        RecordProperty("loops", Names(loops));
        static Reg tables[8][256];
        std::uint64_t constants[ConstantCount];
        for (Reg polynomial : polynomials) {
            BuildTables(polynomial, tables, constants);
            for (std::size_t length : lengths) {
                const std::size_t offset = m_random() % 64;
                const Reg start = static_cast<Reg>(m_random());
                const std::vector<unsigned char> block(m_data.begin(),
                                                       m_data.begin() + offset + length);
                const unsigned char* data = block.data() + offset;
                const Reg expected = bitwise(polynomial, start, data, length);
                for (const auto& loop : loops)
                    ASSERT_EQ(expected, loop.loop(start, data, length, tables, constants))
                        << loop.name << " polynomial " << polynomial << " length " << length
                        << " offset " << offset;
            }
        }
    }

    std::vector<NamedLoop<Crc32Loop>> Loops32() {
        return Available<Crc32Loop>(Crc32Slice8, Crc32Clmul(), Crc32Wide(), Crc32Best());
    }
    std::vector<NamedLoop<Crc16Loop>> Loops16() {
        return Available<Crc16Loop>(Crc16Slice8, Crc16Clmul(), Crc16Wide(), Crc16Best());
    }

    std::mt19937_64 m_random{20240611};
    std::vector<unsigned char> m_data;
};

TEST_F(CrcKernelTest, Crc32LoopsMatchTheBitwiseDefinition) {
    Check(Loops32(),
          Polynomials<std::uint32_t>({0xEDB88320, 0x82F63B78, 0, 1, 0x80000000, 0xFFFFFFFF}, 10),
          BitwiseCrc32, Lengths());
}

TEST_F(CrcKernelTest, Crc16LoopsMatchTheBitwiseDefinition) {
    Check(Loops16(), Polynomials<std::uint16_t>({0x1021, 0x8005, 0x3D65, 0, 1, 0x8000, 0xFFFF}, 10),
          BitwiseCrc16, Lengths());
}

TEST_F(CrcKernelTest, LongBlocksMatchTheBitwiseDefinition) {
    const std::vector<std::size_t> lengths(std::begin(LongLengths), std::end(LongLengths));
    Check(Loops32(), Polynomials<std::uint32_t>({}, 2), BitwiseCrc32, lengths);
    Check(Loops16(), Polynomials<std::uint16_t>({}, 2), BitwiseCrc16, lengths);
}

} // namespace
