#include "desktop/linux/window/DisplayFailure.h"

#include "tests/desktop/TemporaryVariable.h"
#include "tests/fakes/RecordingLog.h"

#include <QDebug>
#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::display_failure_test {

namespace {

class DisplayFailureTest : public testing::Test {
  protected:
    template <std::size_t count>
    static std::string textFor(const std::array<const char*, count>& arguments) {
        return displayFailureText(static_cast<int>(count), arguments.data());
    }

    TemporaryVariable platform_{"QT_QPA_PLATFORM", nullptr};
    TemporaryVariable display_{"DISPLAY", nullptr};
    TemporaryVariable waylandDisplay_{"WAYLAND_DISPLAY", nullptr};
};

TEST_F(DisplayFailureTest, WithoutADisplayTheVariablesThatNameOneAreTold) {
    EXPECT_EQ(
        textFor(std::array{"kelvinbar"}),
        "no display can be opened, because neither DISPLAY nor WAYLAND_DISPLAY is set; start the program "
        "from within a graphical session");
}

TEST_F(DisplayFailureTest, WhatWasTriedIsTold) {
    const TemporaryVariable platform("QT_QPA_PLATFORM", "nonsense");
    const TemporaryVariable display("DISPLAY", ":77");
    const TemporaryVariable wayland("WAYLAND_DISPLAY", "wayland-9");
    EXPECT_EQ(textFor(std::array{"kelvinbar", "-v", "-platform", "xcb", "-display", ":78"}),
              "no display can be opened with -platform xcb, -display :78, QT_QPA_PLATFORM=nonsense, "
              "DISPLAY=:77, WAYLAND_DISPLAY=wayland-9; correct that, or start the program from within a "
              "graphical session");
}

TEST_F(DisplayFailureTest, AnOptionWithoutAValueIsNotTold) {
    const TemporaryVariable display("DISPLAY", ":77");
    EXPECT_EQ(textFor(std::array{"kelvinbar", "-platform"}),
              "no display can be opened with DISPLAY=:77; correct that, or start the program from within a "
              "graphical session");
}

TEST_F(DisplayFailureTest, MessagesOfTheToolkitAreInTheLogAtLevelInfo) {
    const std::array arguments{"kelvinbar"};
    fakes::RecordingLog quiet;
    fakes::RecordingLog verbose("panel=info");
    {
        const DisplayFailure failure(1, arguments.data(), quiet.log);
        qWarning("could not load");
    }
    {
        const DisplayFailure failure(1, arguments.data(), verbose.log);
        qWarning("could not load");
    }
    EXPECT_TRUE(quiet.lines().empty());
    EXPECT_EQ(verbose.lines(), std::vector<std::string>{"kelvinbar: panel info: could not load"});
}

} // namespace
} // namespace kelvinbar::display_failure_test
