#include "store/SnapshotExport.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::snapshot_export_test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// 2026-03-01T14:05:09Z
constexpr std::chrono::system_clock::time_point time{seconds{1'772'373'909}};

SMCReading readingOf(std::string key, std::string value, std::string raw) {
    return {.key = std::move(key),
            .name = "Name",
            .category = SMCCategory::cpu,
            .type = "sp78",
            .value = std::move(value),
            .numericValue = std::nullopt,
            .unit = "°C",
            .raw = std::move(raw),
            .status = "OK"};
}

TEST(SnapshotText, WithoutReadingsItIsTheHeader) {
    EXPECT_EQ(snapshotText({}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 0\n");
}

TEST(SnapshotText, EveryReadingIsALineOfFiveFields) {
    SMCReading fan = readingOf("F0Ac", "1200", "04B0");
    fan.name = "Fan 0";
    fan.category = SMCCategory::fans;
    fan.type = "fpe2";
    fan.unit = "RPM";
    SMCReading revision = readingOf("REV ", "2.4", "322E34");
    revision.name = "SMC Revision";
    revision.type = "ch8*";
    revision.unit = "";
    EXPECT_EQ(snapshotText({revision, fan}, time), "Kelvinbar snapshot\n"
                                                   "Generated: 2026-03-01T14:05:09Z\n"
                                                   "Active keys: 2\n"
                                                   "\n"
                                                   "F0Ac\tfpe2\tFan 0\t1200 RPM\tRAW=04B0\n"
                                                   "REV \tch8*\tSMC Revision\t2.4\tRAW=322E34");
}

TEST(SnapshotText, TwoReadingsMakeSixLinesWithFourTabsEach) {
    const std::string text =
        snapshotText({readingOf("TC0P", "40", "2800"), readingOf("TC1C", "41", "")}, time);
    EXPECT_EQ(std::ranges::count(text, '\n'), 5);
    EXPECT_EQ(std::ranges::count(text, '\t'), 8);
}

TEST(SnapshotText, NumbersInKeysCompareByValue) {
    EXPECT_EQ(snapshotText({readingOf("TC10C", "1", "A"), readingOf("TC2C", "2", "B")}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 2\n\n"
              "TC2C\tsp78\tName\t2 °C\tRAW=B\n"
              "TC10C\tsp78\tName\t1 °C\tRAW=A");
}

TEST(SnapshotText, KeysThatCompareEqualKeepTheOrderOfTheReadings) {
    EXPECT_EQ(snapshotText({readingOf("TC0p", "1", "A"), readingOf("TC0P", "2", "B")}, time),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 2\n\n"
              "TC0p\tsp78\tName\t1 °C\tRAW=A\n"
              "TC0P\tsp78\tName\t2 °C\tRAW=B");
}

TEST(SnapshotText, TheCategoryDoesNotCountForTheOrder) {
    SMCReading battery = readingOf("ZZZZ", "1", "A");
    battery.category = SMCCategory::battery;
    SMCReading voltage = readingOf("AAAA", "2", "B");
    voltage.category = SMCCategory::voltages;
    EXPECT_TRUE(snapshotText({battery, voltage}, time)
                    .ends_with("\nAAAA\tsp78\tName\t2 °C\tRAW=B\nZZZZ\tsp78\tName\t1 °C\tRAW=A"));
}

TEST(SnapshotText, AReadingWithoutRawBytesEndsItsLineWithTheLabel) {
    EXPECT_TRUE(
        snapshotText({readingOf("TC0P", "40", "")}, time).ends_with("\n\nTC0P\tsp78\tName\t40 °C\tRAW="));
}

TEST(SnapshotText, FieldsAreWrittenAsTheyAre) {
    SMCReading reading = readingOf("TC0P", " 40 °C ", "2\t8\n");
    reading.name = "a\tb\nc";
    reading.type = "flt ";
    EXPECT_TRUE(snapshotText({reading}, time).ends_with("\nTC0P\tflt \ta\tb\nc\t40 °C\tRAW=2\t8\n"));
}

TEST(SnapshotText, TheTimeHasNoFractionOfASecond) {
    EXPECT_EQ(snapshotText({}, time + milliseconds(999)), snapshotText({}, time));
    EXPECT_NE(snapshotText({}, time + milliseconds(1000)), snapshotText({}, time));
}

} // namespace
} // namespace kelvinbar::snapshot_export_test
