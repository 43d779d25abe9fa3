#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "COXCheckBase.h"

namespace {

char Digits[] = "123456789";
const DWORD DigitsLength = 9;

TEST(COXCheckBaseTest, PublishedCheckValuesFromFreshObjects) {
    COXCRC16 crc16(0x1021);
    EXPECT_EQ(0x29B1u, crc16.CalculateBlock(Digits, DigitsLength));
    EXPECT_EQ(0x29B1u, crc16.m_nCurrent);

    COXCRC32 crc32(0xEDB88320);
    EXPECT_EQ(0x340BC6D9u, crc32.CalculateBlock(Digits, DigitsLength));
    EXPECT_EQ(0xCBF43926u, ~crc32.m_nCurrent & 0xFFFFFFFFu);

    char abc[] = "abc";
    COXCheckSum8 sum8;
    EXPECT_EQ(0x25u, sum8.CalculateBlock(abc, 3));
}

TEST(COXCheckBaseTest, SizesAndStartValue) {
    COXCheckSum8 sum8;
    COXCheckSum16 sum16;
    COXCheckSum32 sum32;
    COXCRC16 crc16(0x1021);
    COXCRC32 crc32(0xEDB88320);
    EXPECT_EQ(COXCheckBase::Size8Bit, sum8.m_eSize);
    EXPECT_EQ(COXCheckBase::Size16Bit, sum16.m_eSize);
    EXPECT_EQ(COXCheckBase::Size32Bit, sum32.m_eSize);
    EXPECT_EQ(COXCheckBase::Size16Bit, crc16.m_eSize);
    EXPECT_EQ(COXCheckBase::Size32Bit, crc32.m_eSize);
    EXPECT_EQ(1, sum8.m_eSize);
    EXPECT_EQ(3, crc32.m_eSize);
    for (const COXCheckBase* check :
         std::vector<const COXCheckBase*>{&sum8, &sum16, &sum32, &crc16, &crc32})
        EXPECT_EQ(0xFFFFFFFFu, check->m_nCurrent);
}

// The narrow sums change only their own bits; the result is those bits alone.
TEST(COXCheckBaseTest, NarrowSumsKeepTheUpperBitsOfTheStart) {
    unsigned char bytes[300];
    DWORD total = 0;
    for (int i = 0; i < 300; ++i) {
        bytes[i] = static_cast<unsigned char>(i * 37 + 11);
        total += bytes[i];
    }
    COXCheckSum8 sum8;
    EXPECT_EQ((0xFFu + total) & 0xFF, sum8.CalculateBlock(bytes, 300));
    EXPECT_EQ(0xFFFFFF00u | ((0xFFu + total) & 0xFF), sum8.m_nCurrent);

    COXCheckSum16 sum16;
    EXPECT_EQ((0x1234u + total) & 0xFFFF, sum16.CalculateBlock(bytes, 300, 0xABCD1234));
    EXPECT_EQ(0xABCD0000u | ((0x1234u + total) & 0xFFFF), sum16.m_nCurrent);

    COXCheckSum32 sum32;
    EXPECT_EQ(0xFFFFFF00u + total, sum32.CalculateBlock(bytes, 300, 0xFFFFFF00));
}

TEST(COXCheckBaseTest, EmptyBlockReturnsTheStartAtTheCheckWidth) {
    COXCheckSum8 sum8;
    COXCheckSum16 sum16;
    COXCheckSum32 sum32;
    COXCRC16 crc16(0x8005);
    COXCRC32 crc32(0x82F63B78);
    EXPECT_EQ(0x78u, sum8.CalculateBlock(Digits, 0, 0x12345678));
    EXPECT_EQ(0x5678u, sum16.CalculateBlock(Digits, 0, 0x12345678));
    EXPECT_EQ(0x12345678u, sum32.CalculateBlock(Digits, 0, 0x12345678));
    EXPECT_EQ(0x5678u, crc16.CalculateBlock(Digits, 0, 0x12345678));
    EXPECT_EQ(0x12345678u, crc32.CalculateBlock(Digits, 0, 0x12345678));
    // No data at all counts as an empty block.
    EXPECT_EQ(0x5678u, crc16.CalculateBlock(nullptr, 5, 0x12345678));
    EXPECT_EQ(0x12345678u, crc32.CalculateBlock(nullptr, 5, 0x12345678));
}

// Feeding in pieces equals feeding at once; only Reset starts over.
TEST(COXCheckBaseTest, BlocksContinueFromTheRunningValueUntilReset) {
    std::vector<unsigned char> data(5000);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<unsigned char>(i ^ (i >> 7));
    COXCRC32 whole(0xEDB88320), pieces(0xEDB88320);
    COXCRC16 whole16(0x1021), pieces16(0x1021);
    const DWORD expected = whole.CalculateBlock(data.data(), 5000);
    const DWORD expected16 = whole16.CalculateBlock(data.data(), 5000);
    const DWORD cuts[] = {0, 1, 130, 2100, 5000};
    for (int i = 0; i < 4; ++i) {
        pieces.CalculateBlock(data.data() + cuts[i], cuts[i + 1] - cuts[i]);
        pieces16.CalculateBlock(data.data() + cuts[i], cuts[i + 1] - cuts[i]);
    }
    EXPECT_EQ(expected, pieces.m_nCurrent);
    EXPECT_EQ(expected16, pieces16.m_nCurrent);

    EXPECT_NE(expected, pieces.CalculateBlock(Digits, DigitsLength));
    pieces.Reset();
    EXPECT_EQ(0xFFFFFFFFu, pieces.m_nCurrent);
    EXPECT_EQ(0x340BC6D9u, pieces.CalculateBlock(Digits, DigitsLength));
}

TEST(COXCheckBaseTest, TablesAreSharedPerPolynomial) {
    const std::size_t before = COXCRC16::m_tableList.GetCount();
    COXCRC16 first(0x4C11), second(0x4C11);
    EXPECT_EQ(before + 1, COXCRC16::m_tableList.GetCount());
    EXPECT_EQ(first.GetTable(), second.GetTable());
    COXCRC16 other(0x4C13);
    EXPECT_EQ(before + 2, COXCRC16::m_tableList.GetCount());
    EXPECT_NE(first.GetTable(), other.GetTable());

    // Entry 1 of a most-significant-bit-first table is the polynomial itself.
    EXPECT_EQ(0x4C11, first.GetTable()[1]);
    COXCRC32 reflected(0xEDB88320);
    EXPECT_EQ(0xEDB88320u, reflected.GetTable()[128]);
    EXPECT_EQ(0x77073096u, reflected.GetTable()[1]);

    COXCRC16 copy(first);
    EXPECT_EQ(first.GetTable(), copy.GetTable());
    copy.CalculateBlock(Digits, DigitsLength);
    EXPECT_EQ(0xFFFFFFFFu, first.m_nCurrent);
    EXPECT_EQ(before + 2, COXCRC16::m_tableList.GetCount());
}

// Objects of new polynomials built on several threads at once: one node per polynomial, and
// each object computes the same value as one built afterwards on this thread.
TEST(COXCheckBaseTest, FirstUseFromSeveralThreads) {
    const std::size_t before = COXCRC32::m_tableList.GetCount();
    const unsigned long base = 0x5A5A0000;
    const int polynomials = 16, threads = 4;
    std::vector<DWORD> results(polynomials * threads);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&results, t] {
            for (int p = 0; p < polynomials; ++p) {
                COXCRC32 crc(base + static_cast<unsigned long>(p));
                results[p * threads + t] = crc.CalculateBlock(Digits, DigitsLength);
            }
        });
    for (auto& worker : workers)
        worker.join();
    EXPECT_EQ(before + polynomials, COXCRC32::m_tableList.GetCount());
    for (int p = 0; p < polynomials; ++p) {
        COXCRC32 crc(base + static_cast<unsigned long>(p));
        const DWORD expected = crc.CalculateBlock(Digits, DigitsLength);
        for (int t = 0; t < threads; ++t)
            EXPECT_EQ(expected, results[p * threads + t]) << "polynomial " << p;
    }
    EXPECT_EQ(before + polynomials, COXCRC32::m_tableList.GetCount());
}

} // namespace
