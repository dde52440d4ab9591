#include "desktop/linux/window/x11/Strut.h"

#include <gtest/gtest.h>

namespace kelvinbar::strut_test {

namespace {

/// Two screens side by side, the right one lower, on a desktop that contains both.
constexpr QRect leftScreen(0, 0, 1280, 800);
constexpr QRect rightScreen(1280, 200, 1920, 1080);
constexpr QSize desktop(3200, 1280);

constexpr Strut barAtTopOfLeft{.edge = Qt::TopEdge, .depth = 28, .first = 0, .last = 1279};

TEST(Struts, WithoutABarTheWholeScreenIsVisible) {
    EXPECT_EQ(withoutStruts(leftScreen, {}, desktop), leftScreen);
}

TEST(Struts, ABarCoversItsOwnScreenOnly) {
    EXPECT_EQ(withoutStruts(leftScreen, {barAtTopOfLeft}, desktop), QRect(0, 28, 1280, 772));
    EXPECT_EQ(withoutStruts(rightScreen, {barAtTopOfLeft}, desktop), rightScreen);
}

TEST(Struts, AreMeasuredFromTheEdgeOfTheDesktop) {
    // At the bottom of the left screen, which ends 480 pixels above the desktop.
    const Strut bottom{.edge = Qt::BottomEdge, .depth = 480 + 30, .first = 0, .last = 1279};
    EXPECT_EQ(withoutStruts(leftScreen, {bottom}, desktop), QRect(0, 0, 1280, 770));
    EXPECT_EQ(withoutStruts(rightScreen, {bottom}, desktop), rightScreen);
    // At the top of the right screen, which begins 200 pixels below the desktop.
    const Strut top{.edge = Qt::TopEdge, .depth = 200 + 24, .first = 1280, .last = 3199};
    EXPECT_EQ(withoutStruts(rightScreen, {top}, desktop), QRect(1280, 224, 1920, 1056));
    EXPECT_EQ(withoutStruts(leftScreen, {top}, desktop), leftScreen);
}

TEST(Struts, OfBarsAtAllEdgesAddUp) {
    const Struts all{barAtTopOfLeft,
                     {.edge = Qt::LeftEdge, .depth = 40, .first = 0, .last = 799},
                     {.edge = Qt::BottomEdge, .depth = 480 + 20, .first = 0, .last = 1279}};
    EXPECT_EQ(withoutStruts(leftScreen, all, desktop), QRect(40, 28, 1240, 752));
    const Strut right{.edge = Qt::RightEdge, .depth = 50, .first = 200, .last = 1279};
    EXPECT_EQ(withoutStruts(rightScreen, {right}, desktop), QRect(1280, 200, 1870, 1080));
}

TEST(Struts, OfTheWiderOfTwoBarsAtAnEdgeCounts) {
    const Strut wider{.edge = Qt::TopEdge, .depth = 40, .first = 0, .last = 600};
    EXPECT_EQ(withoutStruts(leftScreen, {wider, barAtTopOfLeft}, desktop), QRect(0, 40, 1280, 760));
    EXPECT_EQ(withoutStruts(leftScreen, {barAtTopOfLeft, wider}, desktop), QRect(0, 40, 1280, 760));
}

TEST(Struts, ThatReachAcrossAWholeScreenBelongToTheNextOne) {
    const Strut behind{.edge = Qt::LeftEdge, .depth = 1280 + 30, .first = 200, .last = 799};
    EXPECT_EQ(withoutStruts(leftScreen, {behind}, desktop), leftScreen);
    EXPECT_EQ(withoutStruts(rightScreen, {behind}, desktop), QRect(1310, 200, 1890, 1080));
}

} // namespace
} // namespace kelvinbar::strut_test
