#include "machines/linux/sources/ChipLimits.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::chip_limits_test {

namespace {

class ChipLimitsTest : public testing::Test {
  protected:
    ChipLimitsTest() { write("name", "chip\n"); }

    void write(std::string_view file, std::string_view content) { tree.write(folder / file, content); }

    void writeTemperature(const std::string& channel, std::string_view value, std::string_view limit) {
        write(channel + "_input", value);
        write(channel + "_crit", limit);
    }

    /// Of the only sensor with a limit, or of the nearest to it.
    [[nodiscard]] std::optional<double> degrees(const std::vector<SilentDevice>& silent = {}) {
        const auto margin = limits.smallestMargin(silent);
        return margin ? std::optional(margin->degrees) : std::nullopt;
    }

    fakes::TemporaryTree tree;
    std::filesystem::path folder = "sys/class/hwmon/hwmon0";
    ChipLimits limits{tree.root()};
};

TEST_F(ChipLimitsTest, TheSensorNearestToItsLimitCounts) {
    writeTemperature("temp1", "40000\n", "90000\n");
    writeTemperature("temp2", "71500\n", "80000\n");
    const auto margin = limits.smallestMargin({});
    ASSERT_TRUE(margin);
    EXPECT_EQ(margin->sensor, "chip-virtual-0/temp2");
    EXPECT_DOUBLE_EQ(margin->degrees, 8.5);
}

TEST_F(ChipLimitsTest, TheTemperatureIsReadEachTime) {
    writeTemperature("temp1", "40000\n", "90000\n");
    EXPECT_EQ(degrees(), 50);
    write("temp1_input", "92000\n");
    EXPECT_EQ(degrees(), -2);
}

TEST_F(ChipLimitsTest, SensorsWithoutALimitHaveNoMargin) {
    write("temp1_input", "40000\n");
    write("temp1_max", "45000\n");
    write("in0_input", "1000\n");
    write("in0_crit", "1100\n");
    EXPECT_EQ(degrees(), std::nullopt);
}

TEST_F(ChipLimitsTest, ALimitOfZeroAndBelowIsNone) {
    writeTemperature("temp1", "40000\n", "0\n");
    writeTemperature("temp2", "40000\n", "-273150\n");
    EXPECT_EQ(degrees(), std::nullopt);
}

TEST_F(ChipLimitsTest, CriticalTripPointsOfThermalZonesCount) {
    writeTemperature("temp1", "40000\n", "90000\n");
    folder = "sys/class/thermal/thermal_zone3";
    write("type", "x86_pkg_temp\n");
    write("temp", "61000\n");
    write("trip_point_0_type", "passive\n");
    write("trip_point_0_temp", "60000\n");
    write("trip_point_1_type", "critical\n");
    write("trip_point_1_temp", "105000\n");
    const auto margin = limits.smallestMargin({});
    ASSERT_TRUE(margin);
    EXPECT_EQ(margin->sensor, "x86_pkg_temp/thermal_zone3");
    EXPECT_DOUBLE_EQ(margin->degrees, 44);
    write("temp", "100000\n");
    EXPECT_EQ(degrees(), 5);
    EXPECT_EQ(degrees({{.device = (tree.root() / folder).native(), .file = ""}}), 50);
}

TEST_F(ChipLimitsTest, MeaninglessTripPointsAreNoLimit) {
    folder = "sys/class/thermal/thermal_zone0";
    write("temp", "45000\n");
    write("trip_point_0_type", "critical\n");
    write("trip_point_0_temp", "20000\n");
    EXPECT_EQ(degrees(), std::nullopt);
}

TEST_F(ChipLimitsTest, WhatCannotBeTrustedOrReadDoesNotCount) {
    writeTemperature("temp1", "127000\n", "90000\n");
    write("temp1_fault", "1\n");
    writeTemperature("temp2", "junk\n", "90000\n");
    writeTemperature("temp3", "127000\n", "junk\n");
    EXPECT_EQ(degrees(), std::nullopt);
}

TEST_F(ChipLimitsTest, ADeviceThatSleepsIsLeftOut) {
    writeTemperature("temp1", "40000\n", "90000\n");
    write("device/power/runtime_status", "suspended\n");
    EXPECT_EQ(degrees(), std::nullopt);
    write("device/power/runtime_status", "active\n");
    EXPECT_EQ(degrees(), 50);
}

TEST_F(ChipLimitsTest, ADeviceThatDoesNotAnswerIsLeftOut) {
    writeTemperature("temp1", "40000\n", "90000\n");
    EXPECT_EQ(degrees({{.device = (tree.root() / folder).native(), .file = ""}}), std::nullopt);
    EXPECT_EQ(degrees({{.device = "/sys/class/hwmon/other", .file = ""}}), 50);
}

} // namespace
} // namespace kelvinbar::chip_limits_test
