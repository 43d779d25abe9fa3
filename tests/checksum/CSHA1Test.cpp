// CSHA1 against the FIPS 180 example messages, fed whole, in pieces and from a file; both
// compression loops on random messages.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "CSHA1.h"
#include "Sha1Kernels.h"
#include "TestBytes.h"

namespace {

std::wstring Digest(const std::string& message) {
    CSHA1 sha1;
    sha1.Update(message.data(), message.size());
    sha1.Final();
    return sha1.GetHashText();
}

TEST(CSHA1Test, PublishedVectors) {
    const std::pair<std::string, const wchar_t*> vectors[] = {
        {"", L"da39a3ee5e6b4b0d3255bfef95601890afd80709"},
        {"abc", L"a9993e364706816aba3e25717850c26c9cd0d89d"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         L"84983e441c3bd26ebaae4aa1f95129e5e54670f1"},
        {"abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqr"
         "lmnopqrsmnopqrstnopqrstu",
         L"a49b2446a02c645bf419f995b67091253a04a259"},
        {std::string(1000000, 'a'), L"34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
    };
    for (const auto& [message, digest] : vectors) {
        SCOPED_TRACE(message.substr(0, 20));
        EXPECT_EQ(digest, Digest(message));
    }
    // The million 'a' in uneven pieces crossing the block boundaries every way.
    CSHA1 sha1;
    std::size_t fed = 0;
    for (std::size_t piece = 1; fed < 1000000; piece = piece % 150 + 1) {
        const std::size_t take = std::min(piece, 1000000 - fed);
        ASSERT_TRUE(sha1.Update(std::string(take, 'a').data(), take));
        fed += take;
    }
    ASSERT_TRUE(sha1.Final());
    EXPECT_EQ(L"34aa973cd4c4daa4f61eeb2bdbad27316534016f", sha1.GetHashText());
}

// A final message takes nothing more until Reset; a fresh one has no digest yet.
TEST(CSHA1Test, FinalAndReset) {
    CSHA1 sha1;
    unsigned char bytes[CSHA1::DIGEST_SIZE];
    EXPECT_FALSE(sha1.GetHash(bytes));
    EXPECT_EQ(L"", sha1.GetHashText());
    EXPECT_FALSE(sha1.Update(nullptr, 1));
    EXPECT_TRUE(sha1.Update(nullptr, 0));
    EXPECT_TRUE(sha1.Update("abc", 3));
    EXPECT_TRUE(sha1.Final());
    EXPECT_TRUE(sha1.IsFinal());
    EXPECT_FALSE(sha1.Update("d", 1));
    EXPECT_FALSE(sha1.Final());
    EXPECT_EQ(L"a9993e364706816aba3e25717850c26c9cd0d89d", sha1.GetHashText());
    sha1.Reset();
    EXPECT_FALSE(sha1.IsFinal());
    sha1.Final();
    EXPECT_EQ(L"da39a3ee5e6b4b0d3255bfef95601890afd80709", sha1.GetHashText());
}

// Random messages of every length up to a few blocks: the extension loop, where the processor
// has it, gives the portable loop's state.
TEST(CSHA1Test, CompressionLoopsAgree) {
    const KelBase::Sha1::Compress shaNi = KelBase::Sha1::CompressShaNi();
    ::testing::Test::RecordProperty("sha-ni", shaNi ? "yes" : "no");
    if (!shaNi)
        GTEST_SKIP() << "no SHA extensions on this processor";
    std::mt19937 random(5);
    const Bytes data = RandomBytes(random, 64 * 40);
    for (std::size_t blocks = 0; blocks <= 40; ++blocks) {
        std::uint32_t portable[5], fast[5];
        for (int i = 0; i < 5; ++i)
            portable[i] = fast[i] = static_cast<std::uint32_t>(random());
        KelBase::Sha1::CompressPortable(portable, data.data(), blocks);
        shaNi(fast, data.data(), blocks);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(portable[i], fast[i]) << blocks << " blocks, word " << i;
    }
}

TEST(CSHA1Test, HashFile) {
    namespace fs = std::filesystem;
    const fs::path path = fs::temp_directory_path() / "kel_sha1_test.bin";
    std::string content(3u << 20, '\0');
    std::mt19937 random(3);
    for (char& c : content)
        c = static_cast<char>(random());
    std::ofstream(path, std::ios::binary).write(content.data(), content.size());
    CSHA1 sha1;
    sha1.Update("prefix", 6);
    EXPECT_TRUE(sha1.HashFile(path.wstring().c_str()));
    sha1.Final();
    EXPECT_EQ(Digest("prefix" + content), sha1.GetHashText());
    fs::remove(path);

    CSHA1 missing;
    EXPECT_FALSE(missing.HashFile(path.wstring().c_str()));
    EXPECT_FALSE(missing.HashFile(nullptr));
    missing.Final();
    EXPECT_EQ(L"da39a3ee5e6b4b0d3255bfef95601890afd80709", missing.GetHashText());
}

} // namespace
