#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <new>
#include <vector>

#include "MBlobBuffer.h"

namespace {

class TestBlob : public MBlobBuffer {
public:
    using MBlobBuffer::__Create_with_threshold;
};

// A prime period, so content copied from a wrong offset does not look right by chance.
const std::vector<unsigned char> kBytes = [] {
    std::vector<unsigned char> bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}();

// The buffer holds kBytes[from, from + size) in a block of `capacity` bytes.
void ExpectBlob(const MBlobBuffer& blob, size_t from, size_t size, unsigned long long capacity) {
    EXPECT_EQ(std::vector<unsigned char>(blob.GetData(), blob.GetData() + blob.GetSize()),
              std::vector<unsigned char>(kBytes.begin() + from, kBytes.begin() + from + size));
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
        ExpectBlob(blob, 0, step.count, step.capacity);
        if (step.sameBlock) {
            EXPECT_EQ(blob.GetData(), before) << step.count;
        }
    }
    EXPECT_EQ(blob.Create(kBytes.data(), 0), nullptr);
    ExpectBlob(blob, 0, 0, 0);

    // A new block for exactly 1024 bytes gets a full step of head-room.
    blob.Create(kBytes.data(), 1024);
    EXPECT_EQ(blob.GetCapacity(), 2048u);
}

TEST(MBlobBuffer, CreateFromItsOwnContent) {
    MBlobBuffer blob;
    unsigned char* data = blob.Create(kBytes.data(), 5000);
    // Its own data and size: nothing to do.
    EXPECT_EQ(blob.Create(data, 5000), data);
    ExpectBlob(blob, 0, 5000, 5120);
    // A tail that would fit the old block, and overlaps the start of it.
    blob.Create(blob.GetData() + 100, 4500);
    ExpectBlob(blob, 100, 4500, 5120);
    // A part that needs a smaller block: the old one must outlive the copy.
    blob.Create(blob.GetData() + 1000, 2000);
    ExpectBlob(blob, 1100, 2000, 2048);
    // Its own data with a smaller size.
    blob.Create(blob.GetData(), 10);
    ExpectBlob(blob, 1100, 10, 1024);
}

TEST(MBlobBuffer, ThresholdCarriesTheOldContentOnlyWhenAsked) {
    TestBlob blob;
    blob.Create(kBytes.data(), 1000);

    // Appending 100 bytes outgrows the block; the first 1000 bytes come along.
    const unsigned char* grown = blob.__Create_with_threshold(100, 1, 1);
    EXPECT_EQ(grown, blob.GetData());
    EXPECT_EQ(blob.GetSize(), 1100u);
    EXPECT_EQ(blob.GetCapacity(), 2048u);
    EXPECT_TRUE(std::equal(kBytes.begin(), kBytes.begin() + 1000, grown));

    // Shrinking past the slack with keep copies only what fits.
    blob.__Create_with_threshold(500, 1, 0);
    ExpectBlob(blob, 0, 500, 1024);
    // The appended size is summed in 32 bits, so INT_MAX more wraps below zero: it fails and
    // the content stays.
    EXPECT_THROW(blob.__Create_with_threshold(INT_MAX, 1, 1), std::bad_alloc);
    EXPECT_THROW(blob.__Create_with_threshold(-1, 0, 0), std::bad_alloc);
    ExpectBlob(blob, 0, 500, 1024);

    // Without keep the size still follows the request.
    blob.__Create_with_threshold(3000, 0, 0);
    EXPECT_EQ(blob.GetSize(), 3000u);
    EXPECT_EQ(blob.GetCapacity(), 3072u);
    EXPECT_EQ(blob.__Create_with_threshold(0, 1, 0), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);
    // Keeping the content of an empty buffer copies nothing.
    blob.__Create_with_threshold(10, 1, 1);
    EXPECT_EQ(blob.GetSize(), 10u);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
}
