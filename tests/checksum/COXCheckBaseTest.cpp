#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

#include "COXCheckBase.h"

namespace {

char Digits[] = "123456789"; // its bytes add up to 0x1DD
const DWORD DigitsLength = 9;

TEST(COXCheckBaseTest, FreshObjectsGiveThePublishedValues) {
    COXCheckSum8 sum8;
    COXCheckSum16 sum16;
    COXCheckSum32 sum32;
    COXCRC16 crc16(0x1021);
    COXCRC32 crc32(0xEDB88320);
    // Each check with its width, its value over the digits from a fresh object and the running
    // value it leaves: the narrow sums keep the upper bits of the start.
    const struct {
        COXCheckBase* check;
        COXCheckBase::ESize size;
        DWORD mask, digits, current;
    } cases[] = {
        {&sum8, COXCheckBase::Size8Bit, 0xFF, 0xDC, 0xFFFFFFDC},
        {&sum16, COXCheckBase::Size16Bit, 0xFFFF, 0x01DC, 0xFFFF01DC},
        {&sum32, COXCheckBase::Size32Bit, 0xFFFFFFFF, 0x1DC, 0x1DC},
        {&crc16, COXCheckBase::Size16Bit, 0xFFFF, 0x29B1, 0x29B1},
        {&crc32, COXCheckBase::Size32Bit, 0xFFFFFFFF, 0x340BC6D9, 0x340BC6D9},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.size, c.check->m_eSize);
        EXPECT_EQ(0xFFFFFFFFu, c.check->m_nCurrent);
        EXPECT_EQ(c.digits, c.check->CalculateBlock(Digits, DigitsLength)) << c.size;
        EXPECT_EQ(c.current, c.check->m_nCurrent) << c.size;
        // An explicit start replaces the running value; an empty or absent block returns it at
        // the check's width.
        EXPECT_EQ(0x12345678u & c.mask, c.check->CalculateBlock(Digits, 0, 0x12345678));
        EXPECT_EQ(0x12345678u & c.mask, c.check->CalculateBlock(nullptr, 5, 0x12345678));
        // After a Reset, the digits in two blocks: the second goes on from the running value.
        c.check->Reset();
        c.check->CalculateBlock(Digits, 4);
        EXPECT_EQ(c.digits, c.check->CalculateBlock(Digits + 4, DigitsLength - 4)) << c.size;
    }
    EXPECT_EQ(0xCBF43926u, ~crc32.m_nCurrent);
    EXPECT_EQ(0x1411u, sum16.CalculateBlock(Digits, DigitsLength, 0xABCD1234));
    EXPECT_EQ(0xABCD1411u, sum16.m_nCurrent);
}

// One table per polynomial, also when the first objects of new polynomials are built on
// several threads at once; each computes what an object built afterwards computes.
TEST(COXCheckBaseTest, OneTablePerPolynomialFromSeveralThreads) {
    COXCRC16 first(0x4C11), second(0x4C11), other(0x4C13);
    EXPECT_EQ(first.GetTable(), second.GetTable());
    EXPECT_NE(first.GetTable(), other.GetTable());

    const std::size_t before = COXCRC32::m_tableList.GetCount();
    const int polynomials = 16, threads = 4;
    std::vector<std::pair<const std::uint32_t*, DWORD>> seen(polynomials * threads);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&seen, t] {
            for (int p = 0; p < polynomials; ++p) {
                COXCRC32 crc(0x5A5A0000ul + p);
                seen[p * threads + t] = {crc.GetTable(), crc.CalculateBlock(Digits, DigitsLength)};
            }
        });
    for (auto& worker : workers)
        worker.join();
    EXPECT_EQ(before + polynomials, COXCRC32::m_tableList.GetCount());
    for (int p = 0; p < polynomials; ++p) {
        COXCRC32 crc(0x5A5A0000ul + p);
        const DWORD expected = crc.CalculateBlock(Digits, DigitsLength);
        for (int t = 0; t < threads; ++t)
            EXPECT_EQ(std::make_pair(crc.GetTable(), expected), seen[p * threads + t]) << p;
    }
}

} // namespace
