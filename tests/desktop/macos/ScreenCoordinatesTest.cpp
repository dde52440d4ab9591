#include "desktop/macos/ScreenCoordinates.h"

#include <gtest/gtest.h>

namespace kelvinbar::screen_coordinates_test {

namespace {

TEST(ScreenCoordinates, AnItemInTheMenuBarIsAtTheTop) {
    EXPECT_EQ(fromSystemCoordinates(Rect{1200, 876, 80, 24}, 900), (Rect{1200, 0, 80, 24}));
}

TEST(ScreenCoordinates, WhatTheMenuBarLeavesBeginsBelowIt) {
    EXPECT_EQ(fromSystemCoordinates(Rect{0, 70, 1440, 806}, 900), (Rect{0, 24, 1440, 806}));
}

TEST(ScreenCoordinates, AScreenAboveTheMainOneHasNegativePlaces) {
    EXPECT_EQ(fromSystemCoordinates(Rect{-100, 900, 1920, 1080}, 900), (Rect{-100, -1080, 1920, 1080}));
}

TEST(ScreenCoordinates, APointAtTheTopOfTheScreenHasNoHeight) {
    EXPECT_EQ(fromSystemCoordinates(Point{1200, 900}, 900), (Point{1200, 0}));
    EXPECT_EQ(fromSystemCoordinates(Point{-5, 880}, 900), (Point{-5, 20}));
}

TEST(ScreenCoordinates, AScreenBelowTheMainOneComesAfterIt) {
    EXPECT_EQ(fromSystemCoordinates(Rect{0, -1080, 1920, 1080}, 900), (Rect{0, 900, 1920, 1080}));
}

} // namespace
} // namespace kelvinbar::screen_coordinates_test
