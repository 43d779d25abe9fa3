#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <vector>

#include "MBlobBuffer.h"

namespace {

class TestBlob : public MBlobBuffer {
public:
    using MBlobBuffer::__Create_with_threshold;
};

// A prime period, so content copied from a wrong place does not look right by chance.
const std::vector<unsigned char> kBytes = [] {
    std::vector<unsigned char> bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}();

// The buffer holds the first `size` bytes of kBytes in a block of `capacity` bytes.
void ExpectBlob(const MBlobBuffer& blob, size_t size, unsigned long long capacity) {
    EXPECT_EQ(std::vector<unsigned char>(blob.GetData(), blob.GetData() + blob.GetSize()),
              std::vector<unsigned char>(kBytes.begin(), kBytes.begin() + size));
    EXPECT_EQ(blob.GetCapacity(), capacity) << size;
}

} // namespace

TEST(MBlobBuffer, KeepsItsBlockWhileTheSlackIsAtMost1024) {
    struct Step {
        size_t count;
        unsigned long long capacity;
        bool sameBlock;
    };
    // An old block is reused even for exactly its own size (1024 into 1024) and with 948 bytes
    // to spare (1100 into 2048), but not with 1048 (1000 into 2048).
    const Step steps[] = {{1, 1024, false},   {1024, 1024, true},  {1500, 2048, false},
                          {1100, 2048, true}, {1000, 1024, false}, {4097, 5120, false}};
    MBlobBuffer blob;
    for (const Step& step : steps) {
        const unsigned char* before = blob.GetData();
        const unsigned char* data = blob.Create(kBytes.data(), step.count);
        EXPECT_EQ(data, blob.GetData());
        ExpectBlob(blob, step.count, step.capacity);
        if (step.sameBlock) {
            EXPECT_EQ(blob.GetData(), before) << step.count;
        }
    }
    EXPECT_EQ(blob.Create(kBytes.data(), 0), nullptr);
    ExpectBlob(blob, 0, 0);

    // A new block for exactly 1024 bytes gets a full step of head-room.
    blob.Create(kBytes.data(), 1024);
    EXPECT_EQ(blob.GetCapacity(), 2048u);
}

// The size a caller appends is summed in 32 bits, so INT_MAX more wraps below zero: the request
// fails and the content stays. (The sizing rule and the content each request keeps are held to a
// model by the blob buffer fuzzer.)
TEST(MBlobBuffer, ThresholdRequestsThatWrapFail) {
    TestBlob blob;
    blob.Create(kBytes.data(), 500);
    EXPECT_THROW(blob.__Create_with_threshold(INT_MAX, 1, 1), std::bad_alloc);
    EXPECT_THROW(blob.__Create_with_threshold(-1, 0, 0), std::bad_alloc);
    ExpectBlob(blob, 500, 1024);
}
