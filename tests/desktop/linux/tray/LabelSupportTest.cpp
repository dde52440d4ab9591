#include "desktop/linux/tray/LabelSupport.h"

#include <gtest/gtest.h>

namespace kelvinbar::label_support_test {

TEST(LabelSupport, IsDecidedByTheWatchersProcess) {
    for (const auto* const process : {"gnome-shell", "mate-panel", "notification-ar", "ayatana-indicat",
                                      "unity-panel-ser", "io.elementary.w", "sfwbar"}) {
        EXPECT_TRUE(showsLabels(process, "KDE")) << process;
        EXPECT_LE(std::string(process).size(), 15U) << process; // as long as the kernel's names
    }
    for (const auto* const process : {"kded5", "wrapper-2.0", "xfce4-panel", "lxqt-panel", "waybar",
                                      "xapp-sn-watcher", "budgie-panel", "snixembed"}) {
        EXPECT_FALSE(showsLabels(process, "GNOME")) << process;
    }
}

TEST(LabelSupport, IsDecidedByTheDesktopIfTheProcessIsUnknown) {
    for (const auto* const name : {"ubuntu:GNOME", "GNOME", "MATE", "gnome", "Unity", "Pantheon"}) {
        EXPECT_TRUE(showsLabels("", name)) << name;
    }
    for (const auto* const name : {"KDE", "XFCE", "LXQt", "sway", "X-Cinnamon", ""}) {
        EXPECT_FALSE(showsLabels("", name)) << name;
    }
}

TEST(LabelSupport, ComparesWholeNamesOfDesktops) {
    EXPECT_FALSE(showsLabels("", "gnome-like"));
    EXPECT_FALSE(showsLabels("", "ULTIMATE"));
    EXPECT_FALSE(showsLabels("", ":"));
}

TEST(LabelSupport, DoesNotTakeBudgieForGNOME) {
    EXPECT_FALSE(showsLabels("", "Budgie:GNOME"));
    EXPECT_FALSE(showsLabels("", "GNOME:Budgie"));
}

} // namespace kelvinbar::label_support_test
