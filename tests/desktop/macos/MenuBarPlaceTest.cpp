#include "desktop/macos/MenuBarPlace.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::menu_bar_place_test {

namespace {

/// A bar of 24 points at the top and a Dock of 80 at the bottom.
BarScreen plainScreen() { return {.frames = {{0, 0, 1440, 900}, {0, 24, 1440, 796}}}; }

/// A notebook whose bar is as high as its notch, which is 200 points wide.
BarScreen notchedScreen() {
    return {.frames = {{0, 0, 1512, 982}, {0, 38, 1512, 944}},
            .leftOfNotch = {0, 0, 656, 38},
            .rightOfNotch = {856, 0, 656, 38}};
}

/// A screen above the main one, to its left.
BarScreen upperScreen() { return {.frames = {{-300, -1080, 1920, 1080}, {-300, -1055, 1920, 1055}}}; }

constexpr Rect item{1200, 0, 80, 24};

TEST(MenuBarPlace, AnItemInTheBarIsSeen) {
    EXPECT_EQ(sightOf(item, {plainScreen()}), ItemSight::inBar);
    EXPECT_EQ(frameInBar(item, {plainScreen()}), item);
    EXPECT_EQ(whyUnseen(ItemSight::inBar), nullptr);
}

TEST(MenuBarPlace, TheWindowOfAnItemThatIsSwitchedOffIsNoFrame) {
    for (const Rect off : {Rect{-1, 876, 80, 24}, Rect{-1, 900, 80, 24}, Rect{0, 876, 80, 24}}) {
        EXPECT_EQ(sightOf(off, {plainScreen()}), ItemSight::notInBar);
        EXPECT_EQ(frameInBar(off, {plainScreen()}), std::nullopt);
    }
}

TEST(MenuBarPlace, ThatWindowIsNoFrameInTheBarOfAScreenBelow) {
    const BarScreen lower{.frames = {{0, 900, 1440, 900}, {0, 924, 1440, 876}}};
    EXPECT_EQ(sightOf(Rect{-1, 900, 80, 24}, {plainScreen(), lower}), ItemSight::notInBar);
}

TEST(MenuBarPlace, AnItemThatLeavesTheScreenIsNotInTheBar) {
    EXPECT_EQ(sightOf(Rect{1400, 0, 80, 24}, {plainScreen()}), ItemSight::notInBar);
}

TEST(MenuBarPlace, WithoutAFrameOrScreensAnItemIsNotInTheBar) {
    EXPECT_EQ(sightOf(std::nullopt, {plainScreen()}), ItemSight::notInBar);
    EXPECT_EQ(sightOf(item, {}), ItemSight::notInBar);
    EXPECT_EQ(sightOf(Rect{0, 0, 0, 0}, {plainScreen()}), ItemSight::notInBar);
}

TEST(MenuBarPlace, ABarThatHidesItselfHasTheHeightOfAnItem) {
    const BarScreen hiding{.frames = {{0, 0, 1440, 900}, {0, 0, 1440, 900}}};
    EXPECT_EQ(sightOf(item, {hiding}), ItemSight::inBar);
    EXPECT_EQ(sightOf(Rect{1200, 60, 80, 24}, {hiding}), ItemSight::notInBar);
}

TEST(MenuBarPlace, AnItemMayBeInTheBarOfAnyScreen) {
    const Rect there{1000, -1080, 80, 25};
    EXPECT_EQ(frameInBar(there, {plainScreen(), upperScreen()}), there);
    EXPECT_EQ(frameInBar(there, {plainScreen()}), std::nullopt);
}

TEST(MenuBarPlace, AnItemBehindTheNotchIsNotSeenButHasAFrame) {
    const Rect hidden{700, 0, 80, 38};
    EXPECT_EQ(sightOf(hidden, {notchedScreen()}), ItemSight::behindNotch);
    EXPECT_EQ(frameInBar(hidden, {notchedScreen()}), hidden);
}

TEST(MenuBarPlace, ItemsOnEitherSideOfTheNotchAreSeen) {
    EXPECT_EQ(sightOf(Rect{560, 0, 80, 38}, {notchedScreen()}), ItemSight::inBar);
    EXPECT_EQ(sightOf(Rect{860, 0, 80, 38}, {notchedScreen()}), ItemSight::inBar);
}

TEST(MenuBarPlace, WhyAnItemIsNotSeenIsSaidForEachCase) {
    EXPECT_NE(std::string(whyUnseen(ItemSight::notInBar)).find("System Settings"), std::string::npos);
    EXPECT_NE(std::string(whyUnseen(ItemSight::behindNotch)).find("notch"), std::string::npos);
}

TEST(MenuBarPlace, APressInsideTheFrameIsOnTheItem) {
    EXPECT_TRUE(isOnItem({1240, 12}, item, {plainScreen()}));
    EXPECT_TRUE(isOnItem({1200, 24}, item, {plainScreen()}));
}

TEST(MenuBarPlace, APressAtTheEdgeOfTheScreenAboveAnItemIsOnIt) {
    const Rect low{1200, 7, 80, 24};
    EXPECT_TRUE(isOnItem({1240, 0}, low, {notchedScreen()}));
    EXPECT_TRUE(isOnItem({1040, -1080}, Rect{1000, -1076, 80, 22}, {plainScreen(), upperScreen()}));
}

TEST(MenuBarPlace, APressBesideOrBelowAnItemIsElsewhere) {
    EXPECT_FALSE(isOnItem({1199.5, 12}, item, {plainScreen()}));
    EXPECT_FALSE(isOnItem({1280, 12}, item, {plainScreen()}));
    EXPECT_FALSE(isOnItem({1240, 25}, item, {plainScreen()}));
    EXPECT_FALSE(isOnItem({1240, -1}, item, {plainScreen(), upperScreen()}));
}

TEST(MenuBarPlace, NoPressIsOnAnItemThatIsNotInTheBar) {
    EXPECT_FALSE(isOnItem({10, 880}, Rect{-1, 876, 80, 24}, {plainScreen()}));
    EXPECT_FALSE(isOnItem({1240, 12}, std::nullopt, {plainScreen()}));
}

TEST(MenuBarPlace, APanelWithoutAnItemHangsFromTheTopRightCornerWhereverTheDockIs) {
    EXPECT_EQ(topRightCorner(plainScreen().frames), (Rect{1440, 24, 0, 0}));
    const ScreenFrames screen = plainScreen().frames;
    EXPECT_EQ(placedPopover(topRightCorner(screen), {462, 690}, screen), (Rect{978, 24, 462, 690}));
}

} // namespace
} // namespace kelvinbar::menu_bar_place_test
