#include "desktop/linux/window/ClickPlace.h"

#include <optional>

#include <gtest/gtest.h>

namespace kelvinbar::click_place_test {

namespace {

/// A screen with a bar of 28 pixels at the top.
const QList<ScaledScreen> oneScreen{
    {.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 28, 1280, 772}, .ratio = 1}};

/// The same at twice the scale, with 2560 x 1600 device pixels.
const QList<ScaledScreen> fineScreen{
    {.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 28, 1280, 772}, .ratio = 2}};

/// A fine screen with a bar at the bottom, and a coarse one right of it, without a bar.
const QList<ScaledScreen> twoScreens{
    {.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 0, 1280, 770}, .ratio = 2},
    {.frame = {2560, 0, 1920, 1080}, .visibleFrame = {2560, 0, 1920, 1080}, .ratio = 1}};

/// In a Wayland session, where bars are unknown: one of 2400 x 1500 device pixels, and a coarse one.
const QList<ScaledScreen> fractionalScreens{
    {.frame = {0, 0, 1600, 1000}, .visibleFrame = {0, 0, 1600, 1000}, .ratio = 1.5},
    {.frame = {1600, 0, 1280, 800}, .visibleFrame = {1600, 0, 1280, 800}, .ratio = 1}};

constexpr std::nullopt_t unknown = std::nullopt;

TEST(ClickPlace, IsTheReportedOneNearThePointer) {
    EXPECT_EQ(clickPlace({1240, 14}, QPoint(1250, 20), oneScreen), QPoint(1240, 14));
}

TEST(ClickPlace, IsThePointerForAReportInTheItemsOwnCoordinates) {
    EXPECT_EQ(clickPlace({10, 15}, QPoint(1250, 20), oneScreen), QPoint(1250, 20));
    EXPECT_EQ(clickPlace({0, 24}, QPoint(1250, 20), oneScreen), QPoint(1250, 20));
    EXPECT_EQ(clickPlace({0, 0}, QPoint(1250, 20), oneScreen), QPoint(1250, 20));
}

TEST(ClickPlace, IsTheReportedOneInABarWhenThePointerIsElsewhere) { // the item was activated with a key
    EXPECT_EQ(clickPlace({1240, 14}, QPoint(300, 500), oneScreen), QPoint(1240, 14));
}

TEST(ClickPlace, IsThePointerForAReportOutsideTheBars) {
    EXPECT_EQ(clickPlace({200, 300}, QPoint(600, 500), oneScreen), QPoint(600, 500));
}

TEST(ClickPlace, IsTheReportedOneInABarWhenThePointerIsUnknown) {
    EXPECT_EQ(clickPlace({1240, 14}, unknown, oneScreen), QPoint(1240, 14));
}

TEST(ClickPlace, IsUnknownForAReportOutsideTheBarsAndAnUnknownPointer) {
    EXPECT_EQ(clickPlace({200, 300}, unknown, oneScreen), unknown);
    EXPECT_EQ(clickPlace({5000, 14}, unknown, oneScreen), unknown);
    EXPECT_EQ(clickPlace({10, 15}, unknown, {}), unknown);
}

TEST(ClickPlace, MayBeReportedInDevicePixels) {
    EXPECT_EQ(clickPlace({2480, 28}, QPoint(1242, 16), fineScreen), QPoint(1240, 14));
    EXPECT_EQ(clickPlace({2480, 28}, unknown, fineScreen), QPoint(1240, 14));
}

TEST(ClickPlace, MayBeReportedInLogicalPixelsOfAFineScreen) {
    EXPECT_EQ(clickPlace({1240, 14}, QPoint(1242, 16), fineScreen), QPoint(1240, 14));
}

TEST(ClickPlace, IsConvertedByTheRatioOfItsScreen) {
    EXPECT_EQ(clickPlace({2400, 1580}, unknown, twoScreens), QPoint(1200, 790));
    EXPECT_EQ(clickPlace({4400, 1060}, QPoint(4405, 1062), twoScreens), QPoint(4400, 1060));
}

TEST(LogicalPlace, LeavesAPlaceOutsideTheScreensAsItIs) {
    EXPECT_EQ(logicalPlace({9000, 10}, twoScreens), QPoint(9000, 10));
    EXPECT_EQ(logicalPlace({-1, 10}, twoScreens), QPoint(-1, 10));
    EXPECT_EQ(logicalPlace({3, 4}, {}), QPoint(3, 4));
}

TEST(PlasmaClickPlace, IsTheReportedOneWithoutTheScreensRatio) {
    EXPECT_EQ(plasmaClickPlace({2136, 1458}, fractionalScreens), QPoint(1424, 972));
    EXPECT_EQ(plasmaClickPlace({1350, 30}, fractionalScreens), QPoint(900, 20));
}

TEST(PlasmaClickPlace, IsTheReportedOneWhereABarCanBeOnlyThere) {
    EXPECT_EQ(plasmaClickPlace({1200, 972}, fractionalScreens), QPoint(1200, 972));
}

TEST(PlasmaClickPlace, MayHaveAScaleThatTheScreensRatioRoundsUp) {
    const QList<ScaledScreen> rounded{
        {.frame = {0, 0, 1600, 1000}, .visibleFrame = {0, 0, 1600, 1000}, .ratio = 2}};
    EXPECT_EQ(plasmaClickPlace({2136, 1458}, rounded), QPoint(1424, 972));
}

TEST(PlasmaClickPlace, MayBeAmongTheHiddenIconsAwayFromTheBar) {
    EXPECT_EQ(plasmaClickPlace({1200, 750}, fractionalScreens), QPoint(800, 500));
}

TEST(PlasmaClickPlace, MayBeOnAScreenOfAnotherRatio) {
    EXPECT_EQ(plasmaClickPlace({2800, 790}, fractionalScreens), QPoint(2800, 790));
}

TEST(PlasmaClickPlace, IsUnknownOutsideTheScreens) {
    EXPECT_EQ(plasmaClickPlace({-5, 100}, fractionalScreens), std::nullopt);
    EXPECT_EQ(plasmaClickPlace({100, 100}, {}), std::nullopt);
}

} // namespace
} // namespace kelvinbar::click_place_test
