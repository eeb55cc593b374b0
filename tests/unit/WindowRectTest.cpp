// Where the main window opens by default: 0.8 of the screen, centred.

#include "shell/WindowRect.h"

#include <gtest/gtest.h>

TEST(WindowRect, EightTenthsOfTheScreenCentred) {
    WRect rect = DefaultWindowRect(1280, 1024);
    EXPECT_EQ(rect.left, 128);
    EXPECT_EQ(rect.top, 102); // (1024 - 819) / 2, truncated
    EXPECT_EQ(rect.right - rect.left, 1024);
    EXPECT_EQ(rect.bottom - rect.top, 819); // 819.2 truncated
    EXPECT_EQ(rect.right, 1152);
    EXPECT_EQ(rect.bottom, 921);
}

TEST(WindowRect, SizesAreTruncated) {
    WRect rect = DefaultWindowRect(1366, 768);
    EXPECT_EQ(rect.right - rect.left, 1092); // 1092.8
    EXPECT_EQ(rect.bottom - rect.top, 614);  // 614.4
    EXPECT_EQ(rect.left, 137);
    EXPECT_EQ(rect.top, 77);
    rect = DefaultWindowRect(1920, 1080);
    EXPECT_EQ(rect.left, 192);
    EXPECT_EQ(rect.top, 108);
    EXPECT_EQ(rect.right, 1728);
    EXPECT_EQ(rect.bottom, 972);
}
