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

// A prime period, so content copied from a wrong offset does not look right by chance.
const std::vector<unsigned char> kBytes = [] {
    std::vector<unsigned char> bytes(5000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}();

std::vector<unsigned char> Slice(size_t from, size_t to) {
    return std::vector<unsigned char>(kBytes.begin() + from, kBytes.begin() + to);
}

std::vector<unsigned char> Content(const MBlobBuffer& blob) {
    return std::vector<unsigned char>(blob.GetData(), blob.GetData() + blob.GetSize());
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
    EXPECT_EQ(blob.GetData(), nullptr);
    for (const Step& step : steps) {
        const unsigned char* before = blob.GetData();
        const unsigned char* data = blob.Create(kBytes.data(), step.count);
        EXPECT_EQ(data, blob.GetData());
        EXPECT_EQ(blob.GetCapacity(), step.capacity) << step.count;
        EXPECT_EQ(Content(blob), Slice(0, step.count));
        if (step.sameBlock) {
            EXPECT_EQ(blob.GetData(), before) << step.count;
        }
    }
    EXPECT_EQ(blob.Create(kBytes.data(), 0), nullptr);
    EXPECT_EQ(blob.GetData(), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);
    EXPECT_EQ(blob.GetSize(), 0u);

    // A new block for exactly 1024 bytes gets a full step of head-room.
    blob.Create(kBytes.data(), 1024);
    EXPECT_EQ(blob.GetCapacity(), 2048u);
}

TEST(MBlobBuffer, CreateFromItsOwnContent) {
    MBlobBuffer blob;
    unsigned char* data = blob.Create(kBytes.data(), 5000);

    // Its own data and size: nothing to do.
    EXPECT_EQ(blob.Create(data, 5000), data);
    EXPECT_EQ(Content(blob), kBytes);

    // A tail that would fit the old block, and overlaps the start of it.
    blob.Create(blob.GetData() + 100, 4500);
    EXPECT_EQ(Content(blob), Slice(100, 4600));
    EXPECT_EQ(blob.GetCapacity(), 5120u);

    // A part that needs a smaller block: the old one must outlive the copy.
    blob.Create(blob.GetData() + 1000, 2000);
    EXPECT_EQ(Content(blob), Slice(1100, 3100));
    EXPECT_EQ(blob.GetCapacity(), 2048u);

    // Its own data with a smaller size.
    blob.Create(blob.GetData(), 10);
    EXPECT_EQ(Content(blob), Slice(1100, 1110));
    EXPECT_EQ(blob.GetCapacity(), 1024u);
}

TEST(MBlobBuffer, ThresholdCarriesTheOldContentOnlyWhenAsked) {
    TestBlob blob;
    blob.Create(kBytes.data(), 1000);

    // Appending 100 bytes outgrows the block; the first 1000 bytes come along.
    const unsigned char* grown = blob.__Create_with_threshold(100, 1, 1);
    EXPECT_EQ(grown, blob.GetData());
    EXPECT_EQ(blob.GetCapacity(), 2048u);
    EXPECT_EQ(blob.GetSize(), 1100u);
    EXPECT_EQ(Slice(0, 1000), std::vector<unsigned char>(blob.GetData(), blob.GetData() + 1000));

    // Shrinking past the slack with keep copies only what fits.
    blob.__Create_with_threshold(500, 1, 0);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(Content(blob), Slice(0, 500));

    // The appended size is summed in 32 bits, so INT_MAX more wraps below zero: it fails and
    // the content stays.
    EXPECT_THROW(blob.__Create_with_threshold(INT_MAX, 1, 1), std::bad_alloc);
    EXPECT_THROW(blob.__Create_with_threshold(-1, 0, 0), std::bad_alloc);
    EXPECT_EQ(Content(blob), Slice(0, 500));
    EXPECT_EQ(blob.GetCapacity(), 1024u);

    // Without keep the size still follows the request.
    blob.__Create_with_threshold(3000, 0, 0);
    EXPECT_EQ(blob.GetCapacity(), 3072u);
    EXPECT_EQ(blob.GetSize(), 3000u);

    EXPECT_EQ(blob.__Create_with_threshold(0, 1, 0), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);
    // Keeping the content of an empty buffer copies nothing.
    blob.__Create_with_threshold(10, 1, 1);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(blob.GetSize(), 10u);
}
