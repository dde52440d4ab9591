#include "shell/PopoverPlacement.h"

#include <gtest/gtest.h>

namespace kelvinbar::popover_placement_test {

namespace {

constexpr Rect wholeScreen{0, 0, 1920, 1080};
constexpr Size panel{462, 690};

/// Screens with a bar of 30 points at one edge.
constexpr ScreenFrames barAtTop{wholeScreen, {0, 30, 1920, 1050}};
constexpr ScreenFrames barAtBottom{wholeScreen, {0, 0, 1920, 1050}};
constexpr ScreenFrames barAtLeft{wholeScreen, {30, 0, 1890, 1080}};
constexpr ScreenFrames barAtRight{wholeScreen, {0, 0, 1890, 1080}};

void expectPlace(const Rect& placed, const Rect& expected) {
    EXPECT_EQ(placed.x, expected.x);
    EXPECT_EQ(placed.y, expected.y);
    EXPECT_EQ(placed.width, expected.width);
    EXPECT_EQ(placed.height, expected.height);
}

TEST(PopoverPlacement, IsBelowABarAtTheTopInLineWithTheItem) {
    expectPlace(placedPopover({900, 0, 60, 30}, panel, barAtTop), {930 - 231, 30, 462, 690});
}

TEST(PopoverPlacement, IsAboveABarAtTheBottomInLineWithTheItem) {
    expectPlace(placedPopover({900, 1050, 60, 30}, panel, barAtBottom), {930 - 231, 1050 - 690, 462, 690});
}

TEST(PopoverPlacement, IsRightOfABarAtTheLeftInLineWithTheItem) {
    expectPlace(placedPopover({0, 500, 30, 60}, panel, barAtLeft), {30, 530 - 345, 462, 690});
}

TEST(PopoverPlacement, IsLeftOfABarAtTheRightInLineWithTheItem) {
    expectPlace(placedPopover({1890, 500, 30, 60}, panel, barAtRight), {1890 - 462, 530 - 345, 462, 690});
}

TEST(PopoverPlacement, StaysOnTheScreenForAnItemInTheTopCorners) {
    expectPlace(placedPopover({1880, 0, 40, 30}, panel, barAtTop), {1920 - 462, 30, 462, 690});
    expectPlace(placedPopover({0, 0, 40, 30}, panel, barAtTop), {0, 30, 462, 690});
}

TEST(PopoverPlacement, StaysOnTheScreenForAnItemInTheBottomCorners) {
    expectPlace(placedPopover({1880, 1050, 40, 30}, panel, barAtBottom), {1920 - 462, 360, 462, 690});
    expectPlace(placedPopover({0, 1050, 40, 30}, panel, barAtBottom), {0, 360, 462, 690});
}

TEST(PopoverPlacement, StaysOnTheScreenForAnItemAtTheEndsOfABarAtASide) {
    // Closer to the side of the screen than to the end of the bar.
    expectPlace(placedPopover({0, 30, 30, 40}, panel, barAtLeft), {30, 0, 462, 690});
    expectPlace(placedPopover({1890, 1010, 30, 40}, panel, barAtRight), {1890 - 462, 1080 - 690, 462, 690});
}

TEST(PopoverPlacement, KeepsClearOfABarThatTheItemIsNotIn) {
    // The item is in a bar at the top, and a dock of 80 points is at the right.
    const ScreenFrames screen{wholeScreen, {0, 30, 1840, 1050}};
    expectPlace(placedPopover({1800, 0, 40, 30}, panel, screen), {1840 - 462, 30, 462, 690});
}

TEST(PopoverPlacement, DoesNotCoverABarThatReachesFurtherThanTheItem) {
    // An item of 22 points in a bar of 30.
    expectPlace(placedPopover({900, 4, 60, 22}, panel, barAtTop), {930 - 231, 30, 462, 690});
    expectPlace(placedPopover({900, 1054, 60, 22}, panel, barAtBottom), {930 - 231, 360, 462, 690});
    expectPlace(placedPopover({4, 500, 22, 60}, panel, barAtLeft), {30, 185, 462, 690});
    expectPlace(placedPopover({1894, 500, 22, 60}, panel, barAtRight), {1428, 185, 462, 690});
}

TEST(PopoverPlacement, StaysOnTheSecondScreenRightOfTheFirst) {
    const ScreenFrames second{{1920, 0, 1280, 1024}, {1920, 30, 1280, 994}};
    expectPlace(placedPopover({2400, 0, 60, 30}, panel, second), {2430 - 231, 30, 462, 690});
    expectPlace(placedPopover({1925, 0, 60, 30}, panel, second), {1920, 30, 462, 690});
    expectPlace(placedPopover({3150, 0, 50, 30}, panel, second), {3200 - 462, 30, 462, 690});
}

TEST(PopoverPlacement, StaysOnTheSecondScreenLeftOfAndAboveTheFirst) {
    const ScreenFrames second{{-1280, -1024, 1280, 1024}, {-1280, -1024, 1280, 984}};
    expectPlace(placedPopover({-700, -40, 60, 40}, panel, second), {-670 - 231, -40 - 690, 462, 690});
    expectPlace(placedPopover({-60, -40, 60, 40}, panel, second), {-462, -730, 462, 690});
}

TEST(PopoverPlacement, FindsABarAtTheSideOfAScreenWithAnOffset) {
    const ScreenFrames second{{1920, 200, 1280, 1024}, {1960, 200, 1240, 1024}};
    expectPlace(placedPopover({1920, 700, 40, 40}, panel, second), {1960, 720 - 345, 462, 690});
}

TEST(PopoverPlacement, APanelThatDoesNotFitKeepsItsTopLeftCornerVisible) {
    const Size large{462, 2000};
    expectPlace(placedPopover({900, 0, 60, 30}, large, barAtTop), {699, 30, 462, 2000});
    expectPlace(placedPopover({900, 1050, 60, 30}, large, barAtBottom), {699, 0, 462, 2000});
    const ScreenFrames small{{100, 50, 320, 480}, {100, 80, 320, 450}};
    expectPlace(placedPopover({380, 50, 40, 30}, {420, 560}, small), {100, 80, 420, 560});
}

TEST(PopoverPlacement, APanelOfTheSizeOfTheVisibleFrameFillsIt) {
    expectPlace(placedPopover({1800, 0, 60, 30}, {1920, 1050}, barAtTop), {0, 30, 1920, 1050});
}

TEST(PlacedPopover, AnItemInACornerBelongsToTheBarThatKeepsItsPlaceFree) {
    const Rect anchor{1896, 1044, 24, 24};
    EXPECT_EQ(placedPopover(anchor, {462, 690}, {{0, 0, 1920, 1080}, {0, 0, 1920, 1032}}),
              (Rect{1458, 342, 462, 690}));
    // The item is at the lower end of a bar at the right.
    EXPECT_EQ(placedPopover(anchor, {462, 690}, {{0, 0, 1920, 1080}, {0, 0, 1872, 1080}}),
              (Rect{1410, 390, 462, 690}));
}

TEST(PlacedPopover, AnItemInACornerOfAScreenWithoutFreePlacesBelongsToABarAboveOrBelow) {
    EXPECT_EQ(placedPopover({1896, 1044, 24, 24}, {462, 690}, {{0, 0, 1920, 1080}, {0, 0, 1920, 1080}}),
              (Rect{1458, 354, 462, 690}));
}

TEST(CornerOfBar, IsAtTheRightEndOfABarAtTheTopOrBottom) {
    EXPECT_EQ(cornerOfBar(barAtTop), (Rect{1920, 30, 0, 0}));
    EXPECT_EQ(cornerOfBar(barAtBottom), (Rect{1920, 1050, 0, 0}));
}

TEST(CornerOfBar, IsAtTheLowerEndOfABarAtTheLeftOrRight) {
    EXPECT_EQ(cornerOfBar(barAtLeft), (Rect{30, 1080, 0, 0}));
    EXPECT_EQ(cornerOfBar(barAtRight), (Rect{1890, 1080, 0, 0}));
}

TEST(CornerOfBar, IsTheTopRightCornerWithoutABar) {
    EXPECT_EQ(cornerOfBar({wholeScreen, wholeScreen}), (Rect{1920, 0, 0, 0}));
    EXPECT_EQ(cornerOfBar({}), Rect{});
}

TEST(CornerOfBar, IsAtTheWiderOfTwoBars) {
    EXPECT_EQ(cornerOfBar({wholeScreen, {0, 24, 1920, 1080 - 24 - 40}}), (Rect{1920, 1040, 0, 0}));
}

TEST(CornerOfBar, PutsThePanelIntoTheCorner) {
    for (const ScreenFrames& screen : {barAtTop, barAtBottom, barAtLeft, barAtRight}) {
        const Rect& visible = screen.visibleFrame;
        const Rect corner = cornerOfBar(screen);
        const Rect placed = placedPopover(corner, panel, screen);
        EXPECT_TRUE(placed.x == visible.x || placed.x + placed.width == visible.x + visible.width);
        EXPECT_TRUE(placed.y == visible.y || placed.y + placed.height == visible.y + visible.height);
    }
}

} // namespace
} // namespace kelvinbar::popover_placement_test
