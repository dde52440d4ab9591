#include "panel/SensorRowTexts.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::sensor_row_texts_test {

namespace {

using testing::ElementsAre;

std::string nameOf(const std::string& name, const std::string& key = "TC0P") {
    SMCReading reading;
    reading.key = key;
    reading.name = name;
    return rowName(reading);
}

std::string metadataOf(const std::string& type, const std::string& unit,
                       SMCCategory category = SMCCategory::thermal) {
    SMCReading reading;
    reading.key = "TC0P";
    reading.category = category;
    reading.type = type;
    reading.unit = unit;
    return metadataLine(reading);
}

std::string valueOf(const std::string& value, const std::string& unit = "") {
    SMCReading reading;
    reading.key = "TC0P";
    reading.value = value;
    reading.unit = unit;
    return rowValue(reading);
}

// Values and lines of their own

TEST(RowValue, OfAnotherNumberHasTheFormOfTheRow) {
    SMCReading reading;
    reading.key = "TC0P";
    reading.unit = "°C";
    EXPECT_EQ(rowValue(reading, 48), "48°");
    EXPECT_EQ(rowValue(reading, 48.25), "48.25°");
    reading.unit = "RPM";
    EXPECT_EQ(rowValue(reading, 1200.4), "1200 rpm");
}

TEST(ClipboardLine, HasTheWholeNameAndTheValueWithItsUnit) {
    SMCReading reading;
    reading.key = "TC0P";
    reading.name = " Intel CPU Temperature ";
    reading.value = "48";
    reading.unit = "°C";
    EXPECT_EQ(clipboardLine(reading), "Intel CPU Temperature\t48 °C");
    reading.name = " ";
    EXPECT_EQ(clipboardLine(reading), "TC0P\t48 °C");
}

// Name

TEST(RowName, APlainNameStaysAsItIs) { EXPECT_EQ(nameOf("CPU Core 1"), "CPU Core 1"); }

TEST(RowName, TheWordsOfEveryReadingAreShortenedOrLeftOut) {
    EXPECT_EQ(nameOf("Intel CPU Package Temperature"), "CPU Package Temp");
    EXPECT_EQ(nameOf("Total Power"), "Power");
    EXPECT_EQ(nameOf("Power Total"), "Power");
    EXPECT_EQ(nameOf("Intel Total Power"), "Power");
}

TEST(RowName, EveryOccurrenceIsReplaced) {
    EXPECT_EQ(nameOf("Temperature Temperature"), "Temp Temp");
    EXPECT_EQ(nameOf("Intel Intel CPU Intel GPU"), "CPU GPU");
    EXPECT_EQ(nameOf("TotalTotal Total"), "");
    EXPECT_EQ(nameOf("TemperatureTemperature"), "TempTemp");
}

TEST(RowName, WordsCountInsideOtherWords) {
    EXPECT_EQ(nameOf("Temperatures"), "Temps");
    EXPECT_EQ(nameOf("Totals"), "s");
    EXPECT_EQ(nameOf("NonIntel CPU"), "NonCPU");
}

TEST(RowName, TheCaseOfAWordCounts) {
    EXPECT_EQ(nameOf("temperature total intel CPU"), "temperature total intel CPU");
    EXPECT_EQ(nameOf("TEMPERATURE TOTAL INTEL CPU"), "TEMPERATURE TOTAL INTEL CPU");
}

TEST(RowName, IntelAtTheEndOrBeforeAnotherCharacterStays) {
    EXPECT_EQ(nameOf("CPU Intel"), "CPU Intel");
    EXPECT_EQ(nameOf("Intel-CPU"), "Intel-CPU");
    EXPECT_EQ(nameOf("Intel\tCPU"), "Intel\tCPU");
}

TEST(RowName, WhatALeftOutWordLeavesInsideStays) {
    EXPECT_EQ(nameOf("CPU Total Power"), "CPU  Power");
    EXPECT_EQ(nameOf("Intel  CPU"), "CPU");
}

TEST(RowName, WordsThatLeavingOutMakesAreOnlyFoundByLaterSteps) {
    EXPECT_EQ(nameOf("ToIntel tal Power"), "Power");
    EXPECT_EQ(nameOf("InTotaltel CPU"), "Intel CPU");
    EXPECT_EQ(nameOf("TempTotalerature"), "Temperature");
    EXPECT_EQ(nameOf("ToTotaltal"), "Total");
}

TEST(RowName, TemperatureBetweenBlanksIsTemp) { EXPECT_EQ(nameOf("  Temperature "), "Temp"); }

TEST(RowName, WhiteSpaceAndLineEndsAroundTheNameAreLeftOut) {
    EXPECT_EQ(nameOf(" \t\r\nAmbient\n \v\f"), "Ambient");
    EXPECT_EQ(nameOf("\u00a0\u2003Ambient\u3000\u2028\u0085"), "Ambient");
    EXPECT_EQ(nameOf("Ambient  Air"), "Ambient  Air");
}

TEST(RowName, WithoutANameItIsTheKey) {
    EXPECT_EQ(nameOf(""), "TC0P");
    EXPECT_EQ(nameOf(" \t\n\u2003"), "TC0P");
}

TEST(RowName, ANameEqualToTheKeyIsTheKey) {
    EXPECT_EQ(nameOf("TC0P"), "TC0P");
    EXPECT_EQ(nameOf(" TC0P "), "TC0P");
    EXPECT_EQ(nameOf("tc0p"), "tc0p");
}

TEST(RowName, TheKeyIsShortenedToo) {
    EXPECT_EQ(nameOf("", "native.Temperature"), "native.Temp");
    EXPECT_EQ(nameOf("Total Memory", "Total Memory"), "Memory");
    EXPECT_EQ(nameOf("", "VTT "), "VTT");
}

TEST(RowName, ANameOfLeftOutWordsAloneIsEmptyAndNotTheKey) {
    EXPECT_EQ(nameOf("Intel Total"), "");
    EXPECT_EQ(nameOf("Total"), "");
    EXPECT_EQ(nameOf(" Total\tTotal "), "");
}

TEST(RowName, IntelAloneStaysForWantOfItsBlank) {
    EXPECT_EQ(nameOf("Intel"), "Intel");
    EXPECT_EQ(nameOf("Intel "), "Intel");
    EXPECT_EQ(nameOf("Total Intel Total"), "");
}

// Metadata

TEST(RowMetadata, ItIsTheTypeAndTheUnit) {
    EXPECT_EQ(metadataOf("sp78", "°C"), "sp78 • °C");
    EXPECT_EQ(metadataOf("flt", "W"), "flt • W");
    EXPECT_EQ(metadataOf("sp78", "W"), "sp78 \u2022 W");
}

TEST(RowMetadata, TheTypeIsNotTrimmed) {
    EXPECT_EQ(metadataOf("flt ", "W"), "flt  • W");
    EXPECT_EQ(metadataOf("flt ", ""), "flt ");
    EXPECT_EQ(metadataOf(" ", "V"), "  • V");
}

TEST(RowMetadata, WithoutAUnitItIsTheTypeAlone) {
    EXPECT_EQ(metadataOf("ui16", ""), "ui16");
    EXPECT_EQ(metadataOf("ui16", " \n\u00a0"), "ui16");
}

TEST(RowMetadata, TheUnitIsTrimmed) {
    EXPECT_EQ(metadataOf("ui16", "  RPM\n"), "ui16 • RPM");
    EXPECT_EQ(metadataOf("ui16", "\u2003m Ah\u2003"), "ui16 • m Ah");
}

TEST(RowMetadata, WithoutATypeItIsTheTitleOfTheCategory) {
    EXPECT_EQ(metadataOf("", "", SMCCategory::thermal), "Thermal Zones");
    EXPECT_EQ(metadataOf("", "°C", SMCCategory::gpu), "GPU / iGPU • °C");
    EXPECT_EQ(metadataOf("", " ", SMCCategory::sensors), "Misc Sensors");
    EXPECT_EQ(metadataOf("", "", SMCCategory::unknown), "Other Keys");
}

// Value

TEST(RowValue, DegreesAreShort) {
    EXPECT_EQ(valueOf("45.5", "°C"), "45.5°");
    EXPECT_EQ(valueOf("60 °C"), "60°");
    EXPECT_EQ(valueOf("60°C"), "60°");
    EXPECT_EQ(valueOf("60 °C", "°C"), "60°");
    EXPECT_EQ(valueOf("-4.0", "°C"), "-4.0°");
    EXPECT_EQ(valueOf("60  °C"), "60 °");
}

TEST(RowValue, OtherUnitsStay) {
    EXPECT_EQ(valueOf("1.2 V"), "1.2 V");
    EXPECT_EQ(valueOf("1.2", "V"), "1.2 V");
    EXPECT_EQ(valueOf("15", "GB"), "15 GB");
    EXPECT_EQ(valueOf("98", "°F"), "98 °F");
    EXPECT_EQ(valueOf("12"), "12");
}

TEST(RowValue, SpeedsAreInSmallLetters) {
    EXPECT_EQ(valueOf("1200", "RPM"), "1200 rpm");
    EXPECT_EQ(valueOf("1200 RPM"), "1200 rpm");
    EXPECT_EQ(valueOf("1200 RPM 1300 RPM"), "1200 rpm 1300 rpm");
}

TEST(RowValue, SpeedsWithoutABlankStay) { EXPECT_EQ(valueOf("1200RPM"), "1200RPM"); }

TEST(RowValue, FrequenciesHaveOneBlank) {
    EXPECT_EQ(valueOf("3500MHz"), "3500 MHz");
    EXPECT_EQ(valueOf("3500 MHz"), "3500 MHz");
    EXPECT_EQ(valueOf("3500", "MHz"), "3500 MHz");
    EXPECT_EQ(valueOf("800MHz3500MHz"), "800 MHz3500 MHz");
}

TEST(RowValue, TwoBlanksBecomeOneInASinglePass) {
    EXPECT_EQ(valueOf("a  b"), "a b");
    EXPECT_EQ(valueOf("a   b"), "a  b");
    EXPECT_EQ(valueOf("a    b"), "a  b");
    EXPECT_EQ(valueOf("a     b"), "a   b");
    EXPECT_EQ(valueOf("a  b  c"), "a b c");
    EXPECT_EQ(valueOf("3500  MHz"), "3500  MHz");
}

TEST(RowValue, ItIsTrimmedBeforeItIsShortened) {
    EXPECT_EQ(valueOf("  71.5\n", " °C "), "71.5°");
    EXPECT_EQ(valueOf("\u00a0 5 \u3000"), "5");
    EXPECT_EQ(valueOf("MHz"), " MHz");
}

TEST(RowValue, AnEmptyValueLeavesTheUnit) {
    EXPECT_EQ(valueOf("", ""), "");
    EXPECT_EQ(valueOf(" ", "°C"), "°");
    EXPECT_EQ(valueOf("", "RPM"), "RPM") << "no blank is left before it";
}

TEST(RowValue, TheCaseOfAUnitCounts) {
    EXPECT_EQ(valueOf("5 °c"), "5 °c");
    EXPECT_EQ(valueOf("5 Rpm"), "5 Rpm");
    EXPECT_EQ(valueOf("5mhz"), "5mhz");
}

TEST(RowValue, EveryOccurrenceIsReplaced) { EXPECT_EQ(valueOf("40 °C / 50°C / 60 °C"), "40° / 50° / 60°"); }

// Column of values

std::string shapeOfReadings(const std::vector<SMCReading>& readings) {
    std::vector<const SMCReading*> rows;
    for (const SMCReading& reading : readings) rows.push_back(&reading);
    return longestValueShape(rows);
}

SMCReading numberWithText(std::string value, std::string unit) {
    SMCReading reading;
    reading.value = std::move(value);
    reading.numericValue = 1;
    reading.unit = std::move(unit);
    return reading;
}

std::string shapeOf(const std::vector<std::string>& values) {
    std::vector<SMCReading> readings;
    for (const std::string& value : values) readings.push_back(numberWithText(value, ""));
    return shapeOfReadings(readings);
}

TEST(ValueShape, IsThatOfTheLongestValue) { EXPECT_EQ(shapeOf({"9.5°", "112.5°", "45.1°"}), "000.0°"); }

TEST(ValueShape, CountsCharactersNotBytes) { EXPECT_EQ(shapeOf({"1°°°", "12345"}), "00000"); }

TEST(ValueShape, IsEmptyWithoutReadings) { EXPECT_EQ(shapeOf({}), ""); }

TEST(ValueShape, LeavesOutTexts) {
    SMCReading text;
    text.value = "a whole sentence";
    EXPECT_EQ(shapeOfReadings({numberWithText("9.5", "V"), text}), "0.0 V");
    EXPECT_EQ(shapeOfReadings({text}), "");
}

TEST(ValueShape, IsEmptyForSeveralUnits) {
    EXPECT_EQ(shapeOfReadings({numberWithText("46.27", "°C"), numberWithText("1834", "RPM")}), "");
}

// Background

TEST(RowBackground, ARowThatIsNotPinnedGoesFromWhiteToBlackInEverySection) {
    for (const Accent accent : {Accent::cyan, Accent::red}) {
        EXPECT_THAT(rowBackgroundColors(false, accent),
                    ElementsAre(PanelColor{255, 255, 255, 0.05}, PanelColor{0, 0, 0, 0.20}));
    }
}

TEST(RowBackground, APinnedRowIsRedWithTheAccentMixedIn) {
    for (const Accent accent : {Accent::cyan, Accent::purple, Accent::pink, Accent::grey, Accent::mint,
                                Accent::orange, Accent::yellow, Accent::red}) {
        const PanelColor red = pinRed;
        const PanelColor mixedIn = shade(accent);
        EXPECT_THAT(rowBackgroundColors(true, accent),
                    ElementsAre(PanelColor{red.red, red.green, red.blue, 0.155},
                                PanelColor{mixedIn.red, mixedIn.green, mixedIn.blue, 0.11},
                                PanelColor{0, 0, 0, 0.22}));
    }
}

TEST(RowBackground, APinnedRowDiffersBetweenSections) {
    EXPECT_NE(rowBackgroundColors(true, Accent::cyan), rowBackgroundColors(true, Accent::yellow));
}

} // namespace
} // namespace kelvinbar::sensor_row_texts_test
