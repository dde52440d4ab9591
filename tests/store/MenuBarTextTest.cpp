#include "store/MenuBarText.h"

#include "base/Text.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::menu_bar_text_test {

namespace {

SMCReading namedReading(std::string key, std::string name, std::string value, std::string unit) {
    SMCReading reading;
    reading.key = std::move(key);
    reading.name = std::move(name);
    reading.value = std::move(value);
    reading.unit = std::move(unit);
    return reading;
}

SMCReading readingWith(std::string value, std::string unit) {
    return namedReading("TC0P", "CPU Proximity", std::move(value), std::move(unit));
}

std::string compact(std::string displayValue) {
    return compactMenuBarValue(readingWith(std::move(displayValue), ""));
}

TEST(SanitizedPinnedKeys, KeysAreTrimmed) {
    EXPECT_EQ(sanitizedPinnedKeys({"  TC0P\n", "\tF0Ac \r\n", "\u00A0TG0D\u2028"}),
              (std::vector<std::string>{"TC0P", "F0Ac", "TG0D"}));
}

TEST(SanitizedPinnedKeys, KeysOfSpacesAreSkipped) {
    EXPECT_EQ(sanitizedPinnedKeys({"", "TC0P", " \n\t ", "F0Ac"}),
              (std::vector<std::string>{"TC0P", "F0Ac"}));
    EXPECT_EQ(sanitizedPinnedKeys({"", "  "}), std::vector<std::string>{});
    EXPECT_EQ(sanitizedPinnedKeys({}), std::vector<std::string>{});
}

TEST(SanitizedPinnedKeys, TheFirstOfEqualKeysStays) {
    EXPECT_EQ(sanitizedPinnedKeys({"TC0P", "F0Ac", " TC0P ", "TG0D", "F0Ac"}),
              (std::vector<std::string>{"TC0P", "F0Ac", "TG0D"}));
}

TEST(SanitizedPinnedKeys, CaseAndInnerSpacesAreKept) {
    EXPECT_EQ(sanitizedPinnedKeys({"tc0p", "TC0P", "a b c"}),
              (std::vector<std::string>{"tc0p", "TC0P", "a b c"}));
}

TEST(SanitizedPinnedKeys, NothingIsTakenAfterTheSixth) {
    EXPECT_EQ(sanitizedPinnedKeys({"K1", "K1", "K2", "", "K3", "K4", "K5", "K6", "K7", "K8"}),
              (std::vector<std::string>{"K1", "K2", "K3", "K4", "K5", "K6"}));
}

TEST(CompactMenuBarValue, AUnitIsDrawnToTheNumber) {
    const std::vector<std::pair<SMCReading, std::string>> cases{
        {readingWith("48", "°C"), "48°"},
        {readingWith("1200", "RPM"), "1200rpm"},
        {readingWith("1200", "rpm"), "1200rpm"},
        {readingWith("2400", "MHz"), "2400MHz"},
        {readingWith("48°C", "°C"), "48°"},
        {readingWith("12.50", "V"), "12.50 V"},
        {readingWith("7", ""), "7"},
        {readingWith(" 48 ", " °C "), "48°"},
    };
    for (const auto& [reading, text] : cases) {
        SCOPED_TRACE(reading.displayValue());
        EXPECT_EQ(compactMenuBarValue(reading), text);
    }
}

TEST(CompactMenuBarValue, EveryOccurrenceIsReplacedCaseSensitively) {
    EXPECT_EQ(compact("1 RPM 2 RPM"), "1rpm 2rpm");
    EXPECT_EQ(compact("1 Rpm"), "1 Rpm");
    EXPECT_EQ(compact("1RPM"), "1RPM");
    EXPECT_EQ(compact("1 mhz"), "1 mhz");
    EXPECT_EQ(compact("1 °c"), "1 °c");
    EXPECT_EQ(compact("1 MHz 2 MHz"), "1MHz 2MHz");
    EXPECT_EQ(compact("1 °C 2°C"), "1° 2°");
}

TEST(CompactMenuBarValue, ASpaceBeforeADegreeIsRemovedBeforeDegreesAreShortened) {
    EXPECT_EQ(compact("1  °C"), "1 °");
    EXPECT_EQ(compact("1 °C°C"), "1°°");
}

TEST(CompactMenuBarValue, DoubleSpacesAreHalvedInOnePass) {
    EXPECT_EQ(compact("a  b"), "a b");
    EXPECT_EQ(compact("a   b"), "a  b");
    EXPECT_EQ(compact("a    b"), "a  b");
}

TEST(CompactMenuBarValue, SpacesAreHalvedAfterUnitsAreShortened) { EXPECT_EQ(compact("1  MHz"), "1 MHz"); }

TEST(CompactMenuBarValue, ASpeedIsShortenedInBothSpellingsOneAfterTheOther) {
    EXPECT_EQ(compact("1  RPM"), "1rpm");
    EXPECT_EQ(compact("1   RPM"), "1 rpm");
    EXPECT_EQ(compact("1  rpm"), "1 rpm");
}

TEST(CompactMenuBarValue, FifteenCharactersAreCutToTheFirstTwelve) {
    EXPECT_EQ(compact("123456789ABCDEF"), "123456789ABC");
}

TEST(CompactMenuBarValue, TwelveCharactersStayAndThirteenAreCut) {
    EXPECT_EQ(compact("123456789ABC"), "123456789ABC");
    EXPECT_EQ(compact("123456789ABCD"), "123456789ABC");
}

TEST(CompactMenuBarValue, LengthIsMeasuredAfterShortening) {
    EXPECT_EQ(compact("12345678.5 RPM"), "12345678.5rp");
    EXPECT_EQ(compact("12345678 RPM"), "12345678rpm");
    EXPECT_EQ(compact("12345678901 °C"), "12345678901°");
}

TEST(CompactMenuBarValue, ADegreeSignIsOneCharacterHoweverManyThereAre) {
    EXPECT_EQ(compact("1°C2°C3°C4°C5°C6°C"), "1°2°3°4°5°6°");
    EXPECT_EQ(compact("1°C2°C3°C4°C5°C6°C7"), "1°2°3°4°5°6°");
    EXPECT_EQ(compact("°°°°°°°°°°°°°"), "°°°°°°°°°°°°");
}

TEST(CompactMenuBarValue, ACutTextMayEndWithASpace) {
    const std::string text = compact("10 °C 20 °C 30 °C 40 °C");
    EXPECT_EQ(text, "10° 20° 30° ");
    EXPECT_EQ(characterCount(text), 12U);
}

TEST(MenuBarTitleText, IsEmptyWithoutReadings) { EXPECT_EQ(menuBarTitleText({}), ""); }

TEST(MenuBarTitleText, StartsWithASpaceAndSeparatesByTwo) {
    EXPECT_EQ(menuBarTitleText({readingWith("48", "°C")}), " 48°");
    EXPECT_EQ(menuBarTitleText({readingWith("48", "°C"), readingWith("1200", "RPM")}), " 48°  1200rpm");
    EXPECT_EQ(
        menuBarTitleText({readingWith("1200", "RPM"), readingWith("48", "°C"), readingWith("12.50", "V")}),
        " 1200rpm  48°  12.50 V");
}

TEST(MenuBarToolTipText, ExplainsHowToPinWithoutReadings) {
    EXPECT_EQ(menuBarToolTipText({}), "Kelvinbar - double-click up to 6 sensors to show them here");
}

TEST(MenuBarToolTipText, NamesKeyNameAndValueOfEachReading) {
    const SMCReading temperature = namedReading("TC0P", "CPU Proximity", "48", "°C");
    const SMCReading fan = namedReading("F0Ac", "Fan 0", "1200", "RPM");
    EXPECT_EQ(menuBarToolTipText({temperature}), "Kelvinbar • TC0P • CPU Proximity: 48 °C");
    EXPECT_EQ(menuBarToolTipText({temperature, fan}),
              "Kelvinbar • TC0P • CPU Proximity: 48 °C  |  F0Ac • Fan 0: 1200 RPM");
    EXPECT_EQ(
        menuBarToolTipText({fan, temperature, fan}),
        "Kelvinbar • F0Ac • Fan 0: 1200 RPM  |  TC0P • CPU Proximity: 48 °C  |  F0Ac • Fan 0: 1200 RPM");
}

TEST(MenuBarToolTipText, AValueThatEndsWithItsUnitShowsItOnce) {
    EXPECT_EQ(menuBarToolTipText({namedReading("VC0C", "Voltage", "12 V", "V")}),
              "Kelvinbar • VC0C • Voltage: 12 V");
}

TEST(MenuBarToolTipText, ValueAndUnitAreTrimmed) {
    EXPECT_EQ(menuBarToolTipText({namedReading("VC0C", "Voltage", " 12\n", " V ")}),
              "Kelvinbar • VC0C • Voltage: 12 V");
    EXPECT_EQ(menuBarToolTipText({namedReading("REV ", "SMC Revision", " 2.4 ", "  ")}),
              "Kelvinbar • REV  • SMC Revision: 2.4");
}

TEST(MenuBarToolTipText, ValuesAreNeitherShortenedNorCut) {
    EXPECT_EQ(menuBarToolTipText({namedReading("NCPU", "CPU Model", "A processor with a long name", "")}),
              "Kelvinbar • NCPU • CPU Model: A processor with a long name");
}

} // namespace
} // namespace kelvinbar::menu_bar_text_test
