#include "machines/linux/sources/KernelSensorSource.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/linux/libsensors/FakeSensorConfiguration.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::configured_source_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* board = "nct6798-isa-0290";

/// Kernel sensors with a configuration: one mainboard chip on the ISA bus.
class ConfiguredSourceTest : public testing::Test {
  protected:
    void SetUp() override {
        const std::filesystem::path device = tree.makeDirectory("sys/devices/platform/nct6775.656");
        std::filesystem::create_directory_symlink(tree.makeDirectory("sys/bus/platform"),
                                                  device / "subsystem");
        std::filesystem::create_directory_symlink(device, tree.makeDirectory(hwmon) / "device");
        tree.write(hwmon + "/name", "nct6798\n");
    }

    void write(const std::string& file, const std::string& line) {
        tree.write(hwmon + "/" + file, line + "\n");
    }

    std::vector<std::string> discover() { return source.discoverKeys({}); }

    std::optional<RawReading> read(const std::string& feature) {
        const std::vector<std::string> keys{std::string(board) + "/" + feature};
        auto readings = source.readCandidateKeys(keys);
        return readings.empty() ? std::nullopt : std::optional(readings.front());
    }

    std::optional<double> valueOf(const std::string& feature) {
        const auto reading = read(feature);
        return reading ? reading->numericValue : std::nullopt;
    }

    const std::string hwmon = "sys/class/hwmon/hwmon0";
    fakes::TemporaryTree tree;
    fakes::RecordingLog log;
    fakes::FakeComputation computation;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    std::shared_ptr<fakes::FakeSensorConfiguration> configuration =
        std::make_shared<fakes::FakeSensorConfiguration>();
    KernelSensorSource source{tree.root(), clock, log.log, configuration};
};

TEST_F(ConfiguredSourceTest, ALabelOfTheConfigurationIsInTheName) {
    write("in7_input", "1000");
    configuration->add(board, "in7", "Pump Rail");
    EXPECT_THAT(discover(), ElementsAre("nct6798-isa-0290/in7"));
    ASSERT_TRUE(read("in7").has_value());
    EXPECT_THAT(read("in7")->name.value_or(""), testing::HasSubstr("Pump Rail"));
}

TEST_F(ConfiguredSourceTest, WhatTheConfigurationIgnoresHasNoReading) {
    write("in1_input", "1000");
    write("in2_input", "1000");
    configuration->add(board, "in1", "in1");
    EXPECT_THAT(discover(), ElementsAre("nct6798-isa-0290/in1"));
    configuration->chips[board].clear();
    EXPECT_THAT(discover(), IsEmpty());
}

TEST_F(ConfiguredSourceTest, AComputedValueIsReadThroughTheConfigurationAndTheRawTextIsTheFiles) {
    write("in7_input", "1000");
    computation.value = 12;
    configuration->add(board, "in7", "+12V", &computation);
    discover();
    computation.reads = 0;
    const auto reading = read("in7");
    ASSERT_TRUE(reading.has_value());
    EXPECT_EQ(reading->numericValue, 12);
    EXPECT_EQ(reading->raw, "1000");
    EXPECT_EQ(computation.reads, 1);
}

TEST_F(ConfiguredSourceTest, AValueThatIsNotComputedIsReadThroughTheConfigurationAtDiscoveryAlone) {
    write("in7_input", "1000");
    computation.value = 1;
    configuration->add(board, "in7", "in7", &computation);
    discover();
    EXPECT_EQ(computation.reads, 1);
    EXPECT_EQ(valueOf("in7"), 1);
    discover();
    EXPECT_EQ(valueOf("in7"), 1);
    EXPECT_EQ(computation.reads, 1);
}

TEST_F(ConfiguredSourceTest, AComputedValueThatIsNotPossibleIsNoReading) {
    write("temp1_input", "40000");
    computation.value = 400;
    configuration->add(board, "temp1", "temp1", &computation);
    discover();
    EXPECT_EQ(read("temp1"), std::nullopt);
}

TEST_F(ConfiguredSourceTest, AComputedValueHasNoAnswerWhileAnotherReadDoesNotComeBack) {
    write("temp1_input", "40000");
    computation.value = 50;
    configuration->add(board, "temp1", "temp1", &computation);
    discover();
    computation.value.reset();
    computation.isSilent = true;
    const auto reading = read("temp1");
    ASSERT_TRUE(reading.has_value());
    EXPECT_EQ(reading->value, noAnswer);
    EXPECT_EQ(reading->numericValue, std::nullopt);
    computation.value = 51;
    computation.isSilent = false;
    EXPECT_EQ(valueOf("temp1"), 51);
}

TEST_F(ConfiguredSourceTest, AComputedValueThatCannotBeReadIsNoReading) {
    write("temp1_input", "40000");
    computation.value = 50;
    configuration->add(board, "temp1", "temp1", &computation);
    discover();
    computation.value.reset();
    EXPECT_EQ(read("temp1"), std::nullopt);
}

TEST_F(ConfiguredSourceTest, ASleepingDeviceIsComparedAtTheFirstReadingAfterItsSleep) {
    write("temp1_input", "40000");
    write("device/power/runtime_status", "suspended");
    computation.value = 50;
    configuration->add(board, "temp1", "temp1", &computation);
    discover();
    EXPECT_EQ(read("temp1")->value, "asleep");
    EXPECT_EQ(computation.reads, 0);
    write("device/power/runtime_status", "active");
    clock->advance(std::chrono::seconds(1));
    EXPECT_EQ(valueOf("temp1"), 50);
}

TEST_F(ConfiguredSourceTest, AStandingFanIsComparedWhenItTurns) {
    write("fan1_input", "0");
    computation.value = 0;
    configuration->add(board, "fan1", "fan1", &computation);
    discover();
    EXPECT_EQ(valueOf("fan1"), 0);
    EXPECT_EQ(computation.reads, 0);
    write("fan1_input", "1200");
    computation.value = 600;
    EXPECT_EQ(valueOf("fan1"), 600);
}

TEST_F(ConfiguredSourceTest, ThePowerOfAComputedCounterGrowsWithTheComputedEnergy) {
    write("energy1_input", "1000000");
    computation.value = 2;
    configuration->add(board, "energy1", "energy1", &computation);
    discover();
    clock->advance(std::chrono::seconds(1));
    write("energy1_input", "6000000");
    computation.value = 12;
    EXPECT_EQ(valueOf("energy1"), 10);
}

} // namespace
} // namespace kelvinbar::configured_source_test
