#include "desktop/linux/settings/DesktopPreference.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/linux/settings/FakeSettingsPortal.h"

#include <gtest/gtest.h>

namespace kelvinbar::desktop_preference_test {

namespace {

const QString gnome = "org.gnome.desktop.interface";
const QString freedesktop = "org.freedesktop.appearance";
const QString kde = "org.kde.kdeglobals.KDE";

class ReducedMotionTest : public testing::Test {
  protected:
    /// Waits until the preference has the value; false if it never does.
    static bool becomesReduced(const DesktopPreference& motion, bool isReduced = true) {
        return waitFor([&] { return motion.isExpressed() == isReduced; });
    }

    /// The preference after all settings have been read.
    bool initialPreference() {
        const DesktopPreference motion(QDBusConnection::sessionBus(), reducedMotionSettings());
        EXPECT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
        runEventLoop(std::chrono::milliseconds(50));
        return motion.isExpressed();
    }

    FakeSettingsPortal portal_;
};

TEST_F(ReducedMotionTest, IsOffIfTheDesktopHasNoSuchSetting) { EXPECT_FALSE(initialPreference()); }

TEST_F(ReducedMotionTest, FollowsTheSettingOfAllDesktops) {
    portal_.set(freedesktop, "reduced-motion", 1U);
    EXPECT_TRUE(initialPreference());
}

TEST_F(ReducedMotionTest, FollowsGnomesAnimations) {
    portal_.set(gnome, "enable-animations", false);
    EXPECT_TRUE(initialPreference());
}

TEST_F(ReducedMotionTest, FollowsPlasmasAnimations) {
    portal_.set(kde, "AnimationDurationFactor", "0");
    EXPECT_TRUE(initialPreference());
}

TEST_F(ReducedMotionTest, IsOffIfEverySettingAllowsMotion) {
    portal_.set(freedesktop, "reduced-motion", 0U);
    portal_.set(gnome, "enable-animations", true);
    portal_.set(kde, "AnimationDurationFactor", "0.5");
    EXPECT_FALSE(initialPreference());
}

TEST_F(ReducedMotionTest, IsOffForAValueThatIsNotANumber) {
    portal_.set(kde, "AnimationDurationFactor", "fast");
    EXPECT_FALSE(initialPreference());
}

TEST_F(ReducedMotionTest, FollowsAChange) {
    portal_.set(gnome, "enable-animations", true);
    const DesktopPreference motion(QDBusConnection::sessionBus(), reducedMotionSettings());
    ASSERT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
    portal_.change(gnome, "enable-animations", false);
    EXPECT_TRUE(becomesReduced(motion));
    portal_.change(gnome, "enable-animations", true);
    EXPECT_TRUE(becomesReduced(motion, false));
}

TEST_F(ReducedMotionTest, IgnoresOtherSettings) {
    const DesktopPreference motion(QDBusConnection::sessionBus(), reducedMotionSettings());
    ASSERT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
    portal_.change(gnome, "cursor-size", 0);
    portal_.change(freedesktop, "color-scheme", 1U);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.isExpressed());
}

TEST(ReducedMotionWithoutAPortal, ReadsAPortalThatStartsLater) {
    const DesktopPreference motion(QDBusConnection::sessionBus(), reducedMotionSettings());
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.isExpressed());
    FakeSettingsPortal portal;
    portal.set(gnome, "enable-animations", false);
    EXPECT_TRUE(waitFor([&] { return motion.isExpressed(); }));
}

TEST(ReducedMotionWithoutAPortal, IsOff) {
    const DesktopPreference motion(QDBusConnection::sessionBus(), reducedMotionSettings());
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.isExpressed());
}

/// Whether more contrast is wanted once all settings have been read.
bool isContrastWanted(FakeSettingsPortal& portal) {
    const DesktopPreference contrast(QDBusConnection::sessionBus(), moreContrastSettings());
    EXPECT_TRUE(waitFor([&] { return portal.readCount() == 2; }));
    runEventLoop(std::chrono::milliseconds(50));
    return contrast.isExpressed();
}

TEST(MoreContrast, IsOffIfTheDesktopHasNoSuchSetting) {
    FakeSettingsPortal portal;
    EXPECT_FALSE(isContrastWanted(portal));
}

TEST(MoreContrast, FollowsTheSettingOfAllDesktops) {
    FakeSettingsPortal portal;
    portal.set(freedesktop, "contrast", 1U);
    EXPECT_TRUE(isContrastWanted(portal));
}

TEST(MoreContrast, FollowsGnomesHighContrast) {
    FakeSettingsPortal portal;
    portal.set(freedesktop, "contrast", 0U);
    portal.set("org.gnome.desktop.a11y.interface", "high-contrast", true);
    EXPECT_TRUE(isContrastWanted(portal));
}

TEST(MoreContrast, IsOffIfEverySettingIs) {
    FakeSettingsPortal portal;
    portal.set(freedesktop, "contrast", 0U);
    portal.set("org.gnome.desktop.a11y.interface", "high-contrast", false);
    EXPECT_FALSE(isContrastWanted(portal));
}

} // namespace
} // namespace kelvinbar::desktop_preference_test
