#include "tools/SnapshotDiff.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::snapshot_diff_test {

namespace {

using testing::HasSubstr;

SMCReading reading(std::string_view key, std::string_view name, std::string_view value,
                   std::optional<double> number = std::nullopt, std::string_view unit = "") {
    return {.key = std::string(key),
            .name = std::string(name),
            .category = SMCCategory::cpu,
            .type = {},
            .value = std::string(value),
            .numericValue = number,
            .unit = std::string(unit),
            .raw = "1",
            .status = "OK"};
}

SMCReading degrees(std::string_view key, double number, std::string_view value) {
    return reading(key, "CPU", value, number, "°C");
}

std::string difference(const std::vector<SMCReading>& before, const std::vector<SMCReading>& after,
                       double tolerance = 0) {
    return diffText(diffOf(before, after, tolerance));
}

TEST(SnapshotDiff, IsEmptyForEqualReadingsInAnyOrder) {
    const SMCReading one = degrees("T1", 50, "50");
    const SMCReading two = degrees("T2", 60, "60");
    EXPECT_TRUE(diffOf({one, two}, {two, one}, 0).isEmpty());
    EXPECT_EQ(difference({one, two}, {two, one}), "");
}

TEST(SnapshotDiff, NamesWhatAppearedAndVanished) {
    EXPECT_EQ(difference({degrees("T1", 50, "50")}, {degrees("T2", 60, "60")}),
              "- T1  CPU  50 °C\n+ T2  CPU  60 °C\n");
}

TEST(SnapshotDiff, NamesAnotherName) {
    EXPECT_EQ(difference({reading("F1", "Fan 1", "on")}, {reading("F1", "Pump", "on")}),
              "= F1  Pump  was Fan 1\n");
}

TEST(SnapshotDiff, NamesAnotherNameAndAnotherValueOfOneReading) {
    EXPECT_EQ(difference({reading("F1", "Fan 1", "on")}, {reading("F1", "Pump", "off")}),
              "= F1  Pump  was Fan 1\n~ F1  Pump  on → off\n");
}

TEST(SnapshotDiff, TellsTheDifferenceOfNumbers) {
    EXPECT_EQ(difference({degrees("T1", 50, "50")}, {degrees("T1", 52.5, "52.50")}),
              "~ T1  CPU  50 °C → 52.50 °C (+2.5)\n");
    EXPECT_EQ(difference({degrees("T1", 50, "50")}, {degrees("T1", 38, "38")}),
              "~ T1  CPU  50 °C → 38 °C (-12)\n");
}

TEST(SnapshotDiff, PassesOverNumbersWithinTheTolerance) {
    const std::vector<SMCReading> before{degrees("T1", 50, "50")};
    EXPECT_TRUE(diffOf(before, {degrees("T1", 52, "52")}, 2).isEmpty());
    EXPECT_TRUE(diffOf(before, {degrees("T1", 48, "48")}, 2).isEmpty());
    EXPECT_FALSE(diffOf(before, {degrees("T1", 52.25, "52.25")}, 2).isEmpty());
}

TEST(SnapshotDiff, ComparesTextsWhateverTheTolerance) {
    EXPECT_FALSE(
        diffOf({reading("S", "Status", "Full")}, {reading("S", "Status", "Charging")}, 100).isEmpty());
    EXPECT_FALSE(
        diffOf({reading("S", "Drive", "asleep")}, {reading("S", "Drive", "40", 40, "°C")}, 100).isEmpty());
}

TEST(SnapshotDiff, IsSortedNaturallyAndAligned) {
    EXPECT_EQ(difference({}, {degrees("T10", 50, "50"), degrees("T2", 60, "60")}),
              "+ T2   CPU  60 °C\n+ T10  CPU  50 °C\n");
}

TEST(SnapshotDiff, IsAlsoAJsonObject) {
    const std::string document =
        diffJson(diffOf({degrees("T1", 50, "50"), degrees("T2", 1, "1")}, {degrees("T1", 60, "60")}, 0));
    EXPECT_THAT(document, HasSubstr("{\n  \"schema\": 1,\n  \"appeared\": [],\n  \"vanished\": [\n"));
    EXPECT_THAT(document, HasSubstr("\n  \"renamed\": [],\n"));
    EXPECT_THAT(document,
                HasSubstr("\n  \"changed\": [\n    {\n      \"key\": \"T1\",\n      \"before\": {\n"));
    EXPECT_THAT(document, HasSubstr("\"numericValue\": 60.0"));
}

} // namespace
} // namespace kelvinbar::snapshot_diff_test
