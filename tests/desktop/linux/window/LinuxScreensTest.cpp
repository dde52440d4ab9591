#include "desktop/linux/window/LinuxScreens.h"

#include <optional>

#include <gtest/gtest.h>

namespace kelvinbar::linux_screens_test {

namespace {

constexpr Rect frame{0, 0, 1000, 800};

/// With a bar at the bottom.
constexpr ScreenFrames screen{frame, {0, 0, 1000, 770}};

TEST(LinuxScreens, CheckAHint) {
    const LinuxScreens screens(nullptr, ClickReports::hint);
    EXPECT_NE(screens.placeOfClick({-7000, -7000}), QPoint(-7000, -7000));
}

TEST(LinuxScreens, BelieveAReportOfPlasma) {
    const LinuxScreens screens(nullptr, ClickReports::ofPlasma);
    EXPECT_EQ(screens.placeOfClick({300, 400}), QPoint(300, 400));
    EXPECT_EQ(screens.placeOfClick({-7000, -7000}), std::nullopt);
}

TEST(LowestFrame, IsTheOneOfLeastHeight) {
    EXPECT_EQ(lowestFrame({{0, 0, 500, 800}, {500, 0, 900, 600}, {1400, 0, 400, 700}}),
              (Rect{500, 0, 900, 600}));
    EXPECT_EQ(lowestFrame({}), std::nullopt);
}

TEST(LinuxScreens, HaveThePanelInTheCornerOfTheBarUnlessOneIsChosen) {
    LinuxScreens screens(nullptr, ClickReports::hint);
    EXPECT_EQ(screens.usualPlace(screen), (Rect{1000, 770, 0, 0}));
    screens.setPanelCorner(PanelCorner::topLeft);
    EXPECT_EQ(screens.usualPlace(screen), (Rect{0, 0, 0, 0}));
}

} // namespace
} // namespace kelvinbar::linux_screens_test
