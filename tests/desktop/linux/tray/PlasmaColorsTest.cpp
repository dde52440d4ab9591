#include "desktop/linux/tray/PlasmaColors.h"

#include "tests/desktop/linux/tray/PlasmaSettings.h"

namespace kelvinbar::plasma_colors_test {

namespace {

class PlasmaColorsTest : public testing::Test {
  protected:
    [[nodiscard]] std::optional<bool> hasDarkPanel() const { return hasDarkPlasmaPanel(plasma_.folders()); }

    PlasmaSettings plasma_;
};

TEST_F(PlasmaColorsTest, AreUnknownWithoutSettings) { EXPECT_EQ(hasDarkPanel(), std::nullopt); }

TEST_F(PlasmaColorsTest, AreThoseOfProgramsForAThemeWithoutColours) {
    plasma_.write("config/plasmarc", "[Theme]\nname=default\n");
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), true);
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    EXPECT_EQ(hasDarkPanel(), false);
}

TEST_F(PlasmaColorsTest, AreThoseOfTheThemeIfItHasItsOwn) {
    // Breeze Twilight.
    plasma_.write("config/plasmarc", "[Theme]\nname=breeze-dark\n");
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    plasma_.write("system/plasma/desktoptheme/breeze-dark/colors", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), true);
    plasma_.write("config/plasmarc", "[Theme]\nname=breeze-light\n");
    plasma_.write("system/plasma/desktoptheme/breeze-light/colors", PlasmaSettings::lightWindows);
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), false);
}

TEST_F(PlasmaColorsTest, AreThoseOfTheSchemeThatIsNamed) {
    plasma_.write("config/kdedefaults/kdeglobals", "[General]\nColorScheme=BreezeDark\n");
    EXPECT_EQ(hasDarkPanel(), std::nullopt);
    plasma_.write("system/color-schemes/BreezeDark.colors", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), true);
}

TEST_F(PlasmaColorsTest, AreThoseThatTheUserChoseRatherThanTheGlobalThemes) {
    plasma_.write("config/kdedefaults/kdeglobals", PlasmaSettings::darkWindows);
    plasma_.write("config/kdedefaults/plasmarc", "[Theme]\nname=breeze-dark\n");
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    plasma_.write("config/plasmarc", "[Theme]\nname=default\n");
    plasma_.write("system/plasma/desktoptheme/breeze-dark/colors", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), false);
}

TEST_F(PlasmaColorsTest, AreNotReadFromOutsideTheFolders) {
    plasma_.write("config/plasmarc", "[Theme]\nname=../../elsewhere\n");
    plasma_.write("system/elsewhere/colors", PlasmaSettings::darkWindows);
    EXPECT_EQ(hasDarkPanel(), std::nullopt);
}

TEST_F(PlasmaColorsTest, AreUnknownForDamagedFiles) {
    plasma_.write("config/kdeglobals", "[Colors:Window]\nBackgroundNormal=dark\n");
    EXPECT_EQ(hasDarkPanel(), std::nullopt);
    plasma_.write("config/kdeglobals", QByteArray("\0\xff[[[", 6));
    EXPECT_EQ(hasDarkPanel(), std::nullopt);
}

TEST_F(PlasmaColorsTest, AreUnknownForFilesWithSerializedObjects) {
    const QByteArray object = "object=@Variant(\\0\\0\\0\\b\\0\\0\\0\\0)\n";
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows + object);
    EXPECT_EQ(hasDarkPanel(), std::nullopt);
    plasma_.write("config/kdeglobals", PlasmaSettings::darkWindows + QByteArray(1024 * 1024, '\n'));
    EXPECT_EQ(hasDarkPanel(), std::nullopt) << "too large to be looked through";
}

TEST_F(PlasmaColorsTest, DependOnTheSettingsFilesThatExist) {
    EXPECT_TRUE(plasmaPanelSettings(plasma_.folders()).isEmpty());
    plasma_.write("config/plasmarc", "");
    plasma_.write("config/kdedefaults/kdeglobals", "");
    const QStringList files = plasmaPanelSettings(plasma_.folders());
    ASSERT_EQ(files.size(), 2);
    EXPECT_TRUE(files[0].endsWith("/config/plasmarc"));
    EXPECT_TRUE(files[1].endsWith("/config/kdedefaults/kdeglobals"));
}

TEST(PlasmaFolders, OfThisUserIncludeWhatTheGlobalThemeSets) {
    const PlasmaFolders folders = PlasmaFolders::ofThisUser();
    ASSERT_GE(folders.config.size(), 2);
    EXPECT_TRUE(folders.config.contains(folders.config[0] + "/kdedefaults"));
    EXPECT_FALSE(folders.data.isEmpty());
}

TEST_F(PlasmaColorsTest, LackAFileInTheUsersFolderUntilBothAreThere) {
    const PlasmaFolders folders = plasma_.folders();
    plasma_.write("config/kdedefaults/plasmarc", "[Theme]\nname=default\n");
    plasma_.write("config/kdeglobals", PlasmaSettings::lightWindows);
    EXPECT_EQ(folderOfMissingPlasmaPanelSettings(folders), folders.config.constFirst());
    plasma_.write("config/plasmarc", "[Theme]\nname=default\n");
    EXPECT_EQ(folderOfMissingPlasmaPanelSettings(folders), "");
    EXPECT_EQ(folderOfMissingPlasmaPanelSettings({}), "");
}

} // namespace
} // namespace kelvinbar::plasma_colors_test
