// CSHA1 against the system's SHA-1 (CNG) on random messages of many lengths.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "CSHA1.h"
#include "SystemSha1Win.h"

namespace {

TEST(CSHA1Test, AgreesWithTheSystemsSha1) {
    std::mt19937 random(17);
    for (int round = 0; round < 300; ++round) {
        std::vector<unsigned char> message(random() % (round < 200 ? 200 : 200000));
        for (auto& byte : message)
            byte = static_cast<unsigned char>(random());
        const std::array<unsigned char, 20> expected = SystemSha1(message.data(), message.size());
        unsigned char digest[20];
        CSHA1 sha1;
        sha1.Update(message.data(), message.size());
        sha1.Final();
        ASSERT_TRUE(sha1.GetHash(digest));
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(expected[i], digest[i]) << message.size() << " bytes, digest byte " << i;
    }
}

} // namespace
