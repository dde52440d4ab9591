#include "desktop/linux/settings/MotionPreference.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/linux/settings/FakeSettingsPortal.h"

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

const QString gnome = "org.gnome.desktop.interface";
const QString freedesktop = "org.freedesktop.appearance";
const QString kde = "org.kde.kdeglobals.KDE";

class MotionPreferenceTest : public testing::Test {
  protected:
    /// Waits until the preference has the value; false if it never does.
    static bool becomesReduced(const MotionPreference& motion, bool isReduced = true) {
        return waitFor([&] { return motion.prefersReducedMotion() == isReduced; });
    }

    /// The preference after all settings have been read.
    bool initialPreference() {
        const MotionPreference motion(QDBusConnection::sessionBus());
        EXPECT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
        runEventLoop(std::chrono::milliseconds(50));
        return motion.prefersReducedMotion();
    }

    FakeSettingsPortal portal_;
};

TEST_F(MotionPreferenceTest, IsOffIfTheDesktopHasNoSuchSetting) { EXPECT_FALSE(initialPreference()); }

TEST_F(MotionPreferenceTest, FollowsTheSettingOfAllDesktops) {
    portal_.set(freedesktop, "reduced-motion", 1U);
    EXPECT_TRUE(initialPreference());
}

TEST_F(MotionPreferenceTest, FollowsGnomesAnimations) {
    portal_.set(gnome, "enable-animations", false);
    EXPECT_TRUE(initialPreference());
}

TEST_F(MotionPreferenceTest, FollowsPlasmasAnimations) {
    portal_.set(kde, "AnimationDurationFactor", "0");
    EXPECT_TRUE(initialPreference());
}

TEST_F(MotionPreferenceTest, IsOffIfEverySettingAllowsMotion) {
    portal_.set(freedesktop, "reduced-motion", 0U);
    portal_.set(gnome, "enable-animations", true);
    portal_.set(kde, "AnimationDurationFactor", "0.5");
    EXPECT_FALSE(initialPreference());
}

TEST_F(MotionPreferenceTest, IsOffForAValueThatIsNotANumber) {
    portal_.set(kde, "AnimationDurationFactor", "fast");
    EXPECT_FALSE(initialPreference());
}

TEST_F(MotionPreferenceTest, FollowsAChange) {
    portal_.set(gnome, "enable-animations", true);
    const MotionPreference motion(QDBusConnection::sessionBus());
    ASSERT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
    portal_.change(gnome, "enable-animations", false);
    EXPECT_TRUE(becomesReduced(motion));
    portal_.change(gnome, "enable-animations", true);
    EXPECT_TRUE(becomesReduced(motion, false));
}

TEST_F(MotionPreferenceTest, IgnoresOtherSettings) {
    const MotionPreference motion(QDBusConnection::sessionBus());
    ASSERT_TRUE(waitFor([&] { return portal_.readCount() == 3; }));
    portal_.change(gnome, "cursor-size", 0);
    portal_.change(freedesktop, "color-scheme", 1U);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.prefersReducedMotion());
}

TEST(MotionPreferenceWithoutAPortal, ReadsAPortalThatStartsLater) {
    const MotionPreference motion(QDBusConnection::sessionBus());
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.prefersReducedMotion());
    FakeSettingsPortal portal;
    portal.set(gnome, "enable-animations", false);
    EXPECT_TRUE(waitFor([&] { return motion.prefersReducedMotion(); }));
}

TEST(MotionPreferenceWithoutAPortal, IsOff) {
    const MotionPreference motion(QDBusConnection::sessionBus());
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_FALSE(motion.prefersReducedMotion());
}

} // namespace

} // namespace kelvinbar
