#include "desktop/linux/window/WindowSystem.h"

#include <gtest/gtest.h>

namespace kelvinbar::window_system_test {

TEST(FocusTime, IsThatOfTheUsersEvent) {
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 900}, 1000), 900U);
}

TEST(FocusTime, IsThatOfTheStartupId) {
    EXPECT_EQ(focusTime({.activationToken = "host-17-a_TIME900", .timestamp = 0}, 1000), 900U);
}

TEST(FocusTime, IsTheServersWithoutAnEvent) {
    EXPECT_EQ(focusTime({}, 1000), 1000U);
    EXPECT_EQ(focusTime({.activationToken = "token", .timestamp = 0}, 1000), 1000U);
    EXPECT_EQ(focusTime({.activationToken = "a_TIMEx", .timestamp = 0}, 1000), 1000U);
}

TEST(FocusTime, IsTheServersForATimeOfAnotherClock) {
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 1'700'000'000}, 500'000), 500'000U);
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 1000}, 500'000), 500'000U);
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 1001}, 1000), 1000U); // in the future
}

TEST(FocusTime, SurvivesTheServersClockWrapping) {
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 0xFFFF'FFF0}, 10), 0xFFFF'FFF0U);
}

TEST(FocusTime, IsTheEventsIfTheServerDoesNotTellItsTime) {
    EXPECT_EQ(focusTime({.activationToken = {}, .timestamp = 900}, 0), 900U);
}

} // namespace kelvinbar::window_system_test
