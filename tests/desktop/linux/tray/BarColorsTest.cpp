#include "desktop/linux/tray/BarColors.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/linux/settings/FakeSettingsPortal.h"
#include "tests/desktop/linux/tray/PlasmaSettings.h"

#include <QGuiApplication>
#include <QPalette>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar::bar_colors_test {

namespace {

QPalette paletteOf(const QColor& window, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

const QPalette darkPalette = paletteOf(Qt::black, Qt::white);
const QPalette lightPalette = paletteOf(Qt::white, Qt::black);

class BarColorsTest : public testing::Test {
  protected:
    BarColorsTest() { QGuiApplication::setPalette(lightPalette); }

    BarColorsTest(const BarColorsTest&) = delete;
    BarColorsTest& operator=(const BarColorsTest&) = delete;

    ~BarColorsTest() override { QGuiApplication::setPalette(formerPalette_); }

    BarColors& make(const std::string& desktopNames) {
        colors_ = std::make_unique<BarColors>(desktopNames, QDBusConnection::sessionBus(), plasma_.folders());
        QObject::connect(colors_.get(), &BarColors::changed, [this] { ++changes_; });
        return *colors_;
    }

    bool becomesDark(bool isDark = true) {
        return waitFor([&] { return colors_->isDark() == isDark; });
    }

    QPalette formerPalette_ = QGuiApplication::palette();
    PlasmaSettings plasma_;
    std::unique_ptr<BarColors> colors_;
    int changes_ = 0;
};

TEST_F(BarColorsTest, AreDarkOnOtherDesktops) {
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    for (const auto* const name : {"ubuntu:GNOME", "XFCE", "KDELIKE", ""}) {
        EXPECT_TRUE(make(name).isDark()) << name;
    }
}

TEST_F(BarColorsTest, AskNobodyOnOtherDesktops) {
    FakeSettingsPortal portal;
    make("XFCE");
    QGuiApplication::setPalette(darkPalette);
    QGuiApplication::setPalette(lightPalette);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(portal.readCount(), 0);
    EXPECT_EQ(changes_, 0);
}

TEST_F(BarColorsTest, AreThoseOfPlasmaOnKDE) {
    QGuiApplication::setPalette(darkPalette);
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    EXPECT_FALSE(make("KDE").isDark());
}

TEST_F(BarColorsTest, FollowAFileThatIsReplacedAgainAndAgain) {
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    make("KDE");
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows);
    EXPECT_TRUE(becomesDark());
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    EXPECT_TRUE(becomesDark(false));
    EXPECT_EQ(changes_, 2);
}

TEST_F(BarColorsTest, FollowTheThemeOfPlasma) {
    plasma_.write("config/plasmarc", "[Theme]\nname=default\n");
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    plasma_.write("data/plasma/desktoptheme/breeze-dark/colors", PlasmaSettings::darkWindows);
    EXPECT_FALSE(make("KDE").isDark());
    plasma_.write("config/plasmarc", "[Theme]\nname=breeze-dark\n");
    EXPECT_TRUE(becomesDark());
}

TEST_F(BarColorsTest, FollowTheFirstThemeThatTheUserChooses) {
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    plasma_.write("data/plasma/desktoptheme/breeze-dark/colors", PlasmaSettings::darkWindows);
    EXPECT_FALSE(make("KDE").isDark());
    plasma_.write("config/plasmarc", "[Theme]\nname=breeze-dark\n");
    EXPECT_TRUE(becomesDark());
    plasma_.write("config/plasmarc", "[Theme]\nname=default\n");
    EXPECT_TRUE(becomesDark(false));
}

TEST_F(BarColorsTest, FollowTheFirstColorsThatTheUserChooses) {
    plasma_.write("config/other", "");
    EXPECT_FALSE(make("KDE").isDark());
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows);
    EXPECT_TRUE(becomesDark());
}

TEST_F(BarColorsTest, DoNotChangeWithAFileThatLeavesThemAsTheyWere) {
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    make("KDE");
    plasma_.write("config/kdeglobals", "[Colors:Window]\nBackgroundNormal=250,250,250\n");
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(changes_, 0);
}

TEST_F(BarColorsTest, AreThoseOfThePaletteWithoutSettings) {
    EXPECT_FALSE(make("KDE").isDark());
    QGuiApplication::setPalette(darkPalette);
    EXPECT_TRUE(becomesDark());
    EXPECT_EQ(changes_, 1);
}

TEST_F(BarColorsTest, AreThoseOfThePortalRatherThanThePalettes) {
    FakeSettingsPortal portal;
    portal.set("org.freedesktop.appearance", "color-scheme", 1U);
    make("KDE");
    EXPECT_TRUE(becomesDark());
    portal.change("org.freedesktop.appearance", "color-scheme", 2U);
    EXPECT_TRUE(becomesDark(false));
    portal.change("org.freedesktop.appearance", "color-scheme", 0U); // no preference
    QGuiApplication::setPalette(darkPalette);
    EXPECT_TRUE(becomesDark());
}

TEST_F(BarColorsTest, ReadAFileThatIsNewWhenThePortalReportsAChange) {
    FakeSettingsPortal portal;
    portal.set("org.freedesktop.appearance", "color-scheme", 2U);
    make("KDE");
    plasma_.write("config/plasmarc", "[Theme]\nname=breeze-dark\n");
    plasma_.write("data/plasma/desktoptheme/breeze-dark/colors", PlasmaSettings::darkWindows);
    portal.change("org.freedesktop.appearance", "color-scheme", 2U);
    EXPECT_TRUE(becomesDark());
}

} // namespace
} // namespace kelvinbar::bar_colors_test
