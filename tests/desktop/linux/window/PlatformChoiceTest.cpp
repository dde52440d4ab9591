#include "desktop/linux/window/PlatformChoice.h"

#include <gtest/gtest.h>

namespace kelvinbar::platform_choice_test {

namespace {

constexpr auto variable = "QT_QPA_PLATFORM";

/// Restores a variable of the environment.
class EnvironmentGuard {
  public:
    explicit EnvironmentGuard(const char* name) : name_(name), isSet_(qEnvironmentVariableIsSet(name)) {
        value_ = qgetenv(name);
    }

    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

    ~EnvironmentGuard() {
        if (isSet_) {
            qputenv(name_, value_);
        } else {
            qunsetenv(name_);
        }
    }

  private:
    const char* name_;
    bool isSet_;
    QByteArray value_;
};

class PlatformChoiceTest : public testing::Test {
  protected:
    EnvironmentGuard platform_{variable};
    EnvironmentGuard display_{"DISPLAY"};
    EnvironmentGuard waylandDisplay_{"WAYLAND_DISPLAY"};
};

TEST(PlatformFor, PrefersX11) {
    EXPECT_EQ(platformFor({.hasXServer = true}), "xcb");
    EXPECT_EQ(platformFor({.hasXServer = true, .hasWayland = true}), "xcb");
}

TEST(PlatformFor, IsWaylandWithLayerSurfaces) {
    EXPECT_EQ(platformFor({.hasXServer = true, .hasWayland = true, .hasLayerShell = true}), "wayland");
}

TEST(PlatformFor, IsWaylandWithoutAnXServer) { EXPECT_EQ(platformFor({.hasWayland = true}), "wayland"); }

TEST(PlatformFor, IsLeftToQtWithoutEither) { EXPECT_EQ(platformFor({}), ""); }

TEST_F(PlatformChoiceTest, ADisplayThatRefusesUsDoesNotKeepUsFromWayland) {
    qunsetenv(variable);
    qputenv("DISPLAY", ":999");
    qputenv("WAYLAND_DISPLAY", "wayland-9");
    {
        const PlatformChoice choice([] { return false; });
        EXPECT_EQ(qgetenv(variable), "wayland");
    }
    EXPECT_FALSE(qEnvironmentVariableIsSet(variable));
}

TEST_F(PlatformChoiceTest, TheUsersChoiceStands) {
    qputenv(variable, "vnc");
    qputenv("WAYLAND_DISPLAY", "wayland-9");
    {
        const PlatformChoice choice([] {
            ADD_FAILURE() << "the compositor is asked in vain";
            return true;
        });
        EXPECT_EQ(qgetenv(variable), "vnc");
    }
    EXPECT_EQ(qgetenv(variable), "vnc");
}

TEST(PlatformFinding, TellsHowThePanelIsDrawn) {
    const auto found = [](const SessionDisplays& displays) { return platformFinding("", displays).found; };
    EXPECT_EQ(found({.hasXServer = true}), "xcb");
    EXPECT_EQ(found({.hasXServer = true, .hasWayland = true}), "xcb, on the X server of the Wayland session");
    EXPECT_EQ(found({.hasWayland = true, .hasLayerShell = true}), "wayland, with layer surfaces");
    EXPECT_EQ(platformFinding("offscreen", {}).found, "offscreen, as QT_QPA_PLATFORM says");
    EXPECT_EQ(platformFinding("offscreen", {}).state, FindingState::good);
}

TEST(PlatformFinding, SaysWhatIsMissing) {
    EXPECT_EQ(platformFinding("", {.hasWayland = true}).state, FindingState::note);
    const Finding none = platformFinding("", {});
    EXPECT_EQ(none.state, FindingState::problem);
    EXPECT_EQ(none.advice, "Start the program inside the session of the desktop");
}

} // namespace
} // namespace kelvinbar::platform_choice_test
