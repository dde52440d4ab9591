#include "machines/linux/sources/ChipLimits.h"

#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/SystemCalls.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

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
    [[nodiscard]] std::optional<double> degrees() {
        const auto margin = limits.smallestMargin();
        return margin ? std::optional(margin->degrees) : std::nullopt;
    }

    fakes::TemporaryTree tree;
    std::filesystem::path folder = "sys/class/hwmon/hwmon0";
    ChipLimits limits{tree.root()};
};

TEST_F(ChipLimitsTest, TheSensorNearestToItsLimitCounts) {
    writeTemperature("temp1", "40000\n", "90000\n");
    writeTemperature("temp2", "71500\n", "80000\n");
    const auto margin = limits.smallestMargin();
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
    const auto margin = limits.smallestMargin();
    ASSERT_TRUE(margin);
    EXPECT_EQ(margin->sensor, "x86_pkg_temp/thermal_zone3");
    EXPECT_DOUBLE_EQ(margin->degrees, 44);
    write("temp", "100000\n");
    EXPECT_EQ(degrees(), 5);
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

/// Limits of which a file does not answer for a while.
class StalledChipLimitsTest : public ChipLimitsTest, public testing::WithParamInterface<const char*> {
  protected:
    std::optional<double> degreesIn(WatchedPass& pass) {
        const WatchedPass::Scope scope(pass);
        return degrees();
    }

    fakes::RecordingLog log;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    std::shared_ptr<ReadWatch> watch =
        std::make_shared<ReadWatch>(clock, log.log, std::chrono::milliseconds(1));
};

TEST_P(StalledChipLimitsTest, AbandonTheLookAndAreLeftOutUntilTheyAnswer) {
    writeTemperature("temp1", "40000\n", "90000\n");
    WatchedPass stuck(watch);
    std::thread reader;
    {
        const fakes::StalledFile file(tree.root() / folder / GetParam());
        reader = std::thread([&] { static_cast<void>(degreesIn(stuck)); });
        file.waitForVictim();
        clock->advance(watch->limit());
        watch->setAsideSilentDevices();
        EXPECT_TRUE(stuck.isAbandoned());
        WatchedPass next(watch);
        EXPECT_EQ(degreesIn(next), std::nullopt);
    }
    reader.join();
    WatchedPass last(watch);
    EXPECT_EQ(degreesIn(last), 50);
}

INSTANTIATE_TEST_SUITE_P(All, StalledChipLimitsTest, testing::Values("name", "temp1_crit", "temp1_input"),
                         [](const auto& file) { return std::string(file.param); });

} // namespace
} // namespace kelvinbar::chip_limits_test
