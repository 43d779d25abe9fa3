#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <new>
#include <vector>

#include "MBlobBuffer.h"

namespace {

class TestBlob : public MBlobBuffer {
public:
    using MBlobBuffer::__Create_with_threshold;
};

// A prime period, so content copied from a wrong offset does not look right by chance.
std::vector<unsigned char> Counting(size_t count) {
    std::vector<unsigned char> bytes(count);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return bytes;
}

std::vector<unsigned char> Slice(const std::vector<unsigned char>& bytes, size_t from, size_t to) {
    return std::vector<unsigned char>(bytes.begin() + from, bytes.begin() + to);
}

std::vector<unsigned char> Content(const MBlobBuffer& blob) {
    return std::vector<unsigned char>(blob.GetData(), blob.GetData() + blob.GetSize());
}

} // namespace

TEST(MBlobBuffer, GrowsInSteps) {
    const std::vector<unsigned char> bytes = Counting(5000);
    MBlobBuffer blob;
    EXPECT_EQ(blob.GetData(), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);

    EXPECT_NE(blob.Create(bytes.data(), 1), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    blob.Create(bytes.data(), 1024); // fits the block exactly
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(blob.GetSize(), 1024u);

    // A new block for exactly 1024 bytes still gets a full step of head-room.
    MBlobBuffer fresh;
    fresh.Create(bytes.data(), 1024);
    EXPECT_EQ(fresh.GetCapacity(), 2048u);
    EXPECT_EQ(fresh.GetSize(), 1024u);
    blob.Create(bytes.data(), 4097);
    EXPECT_EQ(blob.GetCapacity(), 5120u);
    EXPECT_EQ(Content(blob), Slice(bytes, 0, 4097));
}

TEST(MBlobBuffer, KeepsItsBlockWhileTheSlackIsAtMost1024) {
    const std::vector<unsigned char> bytes = Counting(1500);
    MBlobBuffer blob;
    blob.Create(bytes.data(), 1500);
    ASSERT_EQ(blob.GetCapacity(), 2048u);
    const unsigned char* block = blob.GetData();

    blob.Create(bytes.data() + 400, 1100); // slack 948
    EXPECT_EQ(blob.GetData(), block);
    EXPECT_EQ(blob.GetCapacity(), 2048u);
    EXPECT_EQ(Content(blob), Slice(bytes, 400, 1500));

    blob.Create(bytes.data(), 1000); // slack 1048
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(Content(blob), Slice(bytes, 0, 1000));
}

TEST(MBlobBuffer, CreateOfNothingReleasesTheBlock) {
    const std::vector<unsigned char> bytes = Counting(10);
    MBlobBuffer blob;
    blob.Create(bytes.data(), 10);
    EXPECT_EQ(blob.Create(bytes.data(), 0), nullptr);
    EXPECT_EQ(blob.GetData(), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);
    EXPECT_EQ(blob.GetSize(), 0u);
}

TEST(MBlobBuffer, CreateFromItsOwnContent) {
    const std::vector<unsigned char> bytes = Counting(5000);
    MBlobBuffer blob;
    unsigned char* data = blob.Create(bytes.data(), 5000);

    // Its own data and size: nothing to do.
    EXPECT_EQ(blob.Create(data, 5000), data);
    EXPECT_EQ(Content(blob), bytes);

    // A tail that would fit the old block, and overlaps the start of it.
    blob.Create(blob.GetData() + 100, 4500);
    EXPECT_EQ(Content(blob), Slice(bytes, 100, 4600));
    EXPECT_EQ(blob.GetCapacity(), 5120u);

    // A part that needs a smaller block: the old one must outlive the copy.
    blob.Create(blob.GetData() + 1000, 2000);
    EXPECT_EQ(Content(blob), Slice(bytes, 1100, 3100));
    EXPECT_EQ(blob.GetCapacity(), 2048u);

    // Its own data with a smaller size.
    blob.Create(blob.GetData(), 10);
    EXPECT_EQ(Content(blob), Slice(bytes, 1100, 1110));
    EXPECT_EQ(blob.GetCapacity(), 1024u);
}

TEST(MBlobBuffer, ThresholdKeepsOrDropsTheOldContent) {
    const std::vector<unsigned char> bytes = Counting(1000);
    TestBlob blob;
    blob.Create(bytes.data(), 1000);
    ASSERT_EQ(blob.GetCapacity(), 1024u);

    // Appending 100 bytes outgrows the block; the first 1000 bytes come along.
    const unsigned char* grown = blob.__Create_with_threshold(100, 1, 1);
    EXPECT_EQ(grown, blob.GetData());
    EXPECT_EQ(blob.GetCapacity(), 2048u);
    EXPECT_EQ(blob.GetSize(), 1100u);
    EXPECT_EQ(std::memcmp(blob.GetData(), bytes.data(), 1000), 0);

    // Shrinking within the slack only changes the size.
    EXPECT_EQ(blob.__Create_with_threshold(1500, 0, 0), grown);
    EXPECT_EQ(blob.GetSize(), 1500u);
    EXPECT_EQ(std::memcmp(blob.GetData(), bytes.data(), 1000), 0);

    // Shrinking past the slack with keep copies only what fits.
    blob.__Create_with_threshold(500, 1, 0);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(blob.GetSize(), 500u);
    EXPECT_EQ(std::memcmp(blob.GetData(), bytes.data(), 500), 0);

    // Without keep the size still follows the request.
    blob.__Create_with_threshold(3000, 0, 0);
    EXPECT_EQ(blob.GetCapacity(), 3072u);
    EXPECT_EQ(blob.GetSize(), 3000u);

    EXPECT_EQ(blob.__Create_with_threshold(0, 1, 0), nullptr);
    EXPECT_EQ(blob.GetCapacity(), 0u);
    EXPECT_EQ(blob.GetSize(), 0u);

    // Keeping the content of an empty buffer copies nothing.
    blob.__Create_with_threshold(10, 1, 1);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
    EXPECT_EQ(blob.GetSize(), 10u);
}

TEST(MBlobBuffer, SizeBelowZeroFailsAndKeepsTheContent) {
    const std::vector<unsigned char> bytes = Counting(10);
    TestBlob blob;
    blob.Create(bytes.data(), 10);
    // The appended size is summed in 32 bits, so INT_MAX more wraps below zero.
    EXPECT_THROW(blob.__Create_with_threshold(INT_MAX, 1, 1), std::bad_alloc);
    EXPECT_THROW(blob.__Create_with_threshold(-1, 0, 0), std::bad_alloc);
    EXPECT_EQ(Content(blob), bytes);
    EXPECT_EQ(blob.GetCapacity(), 1024u);
}
