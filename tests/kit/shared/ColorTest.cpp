#include "Color.h"

#include <gtest/gtest.h>

using KelSDK::Common::Color;

TEST(Color, ChannelsMapToTheColorRefLayout) {
    const Color color(0x12, 0x34, 0x56);
    EXPECT_EQ(0x00563412u, color.ToColorRef());
    EXPECT_EQ(255, color.GetAlpha());

    const Color fromRef(0x01ABCDEFu); // palette flag in the top byte
    EXPECT_EQ(0xEF, fromRef.GetRed());
    EXPECT_EQ(0xCD, fromRef.GetGreen());
    EXPECT_EQ(0xAB, fromRef.GetBlue());
    EXPECT_EQ(255, fromRef.GetAlpha());
    EXPECT_EQ(0x00ABCDEFu, fromRef.ToColorRef());

    const Color translucent(1, 2, 3, 4);
    EXPECT_EQ(0x00030201u, translucent.ToColorRef());
    EXPECT_NE(Color(1, 2, 3), translucent);
    EXPECT_EQ(Color(1, 2, 3), Color(translucent.ToColorRef()));
    EXPECT_EQ(Color(0, 0, 0, 255), Color());
}
