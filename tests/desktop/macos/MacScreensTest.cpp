#include "desktop/macos/MacScreens.h"

#include <gtest/gtest.h>

namespace kelvinbar::mac_screens_test {

namespace {

TEST(MacScreens, WithoutAnItemThePanelHangsFromTheTopRightCornerAlsoWithALargeDock) {
    const ScreenFrames withDock{{0, 0, 1440, 900}, {0, 24, 1440, 776}};
    const MacScreens screens;
    EXPECT_EQ(screens.usualPlace(withDock), (Rect{1440, 24, 0, 0}));
    EXPECT_NE(QtScreens().usualPlace(withDock), (Rect{1440, 24, 0, 0}));
}

} // namespace
} // namespace kelvinbar::mac_screens_test
