#include "Color.h"

#include <gtest/gtest.h>

using KelSDK::Common::Color;

TEST(Color, ChannelsMapToTheColorRefLayout) {
    EXPECT_EQ(0x00563412u, Color(0x12, 0x34, 0x56, 7).ToColorRef()); // alpha has no place
    EXPECT_TRUE(Color(0xEF, 0xCD, 0xAB, 255) == Color(0x01ABCDEFu)); // flags, not alpha
    EXPECT_TRUE(Color(1, 2, 3) != Color(1, 2, 3, 4));
    EXPECT_TRUE(Color(0, 0, 0, 255) == Color());
}
