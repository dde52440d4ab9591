#include "machines/linux/libsensors/ConfiguredChips.h"

#include "tests/machines/linux/libsensors/FakeSensorConfiguration.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::configured_chips_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ConfiguredChipsTest : public testing::Test {
  protected:
    SensorChip& addChip(const std::string& name, const std::string& sensorsName) {
        SensorChip chip;
        chip.name = name;
        chip.sensorsName = sensorsName;
        chips.push_back(chip);
        return chips.back();
    }

    static void addChannel(SensorChip& chip, SensorKind kind, int number, const std::string& feature,
                           const std::string& label = "") {
        SensorChannel channel(kind, number);
        channel.feature = feature;
        channel.label = label.empty() ? feature : label;
        channel.isLabelled = !label.empty();
        chip.channels.push_back(channel);
    }

    void apply() { applyConfiguration(chips, configuration); }

    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const SensorChip& chip : chips) {
            for (const SensorChannel& channel : chip.channels) labels.push_back(channel.label);
        }
        return labels;
    }

    static constexpr auto board = "nct6798-isa-0290";

    std::vector<SensorChip> chips;
    fakes::FakeSensorConfiguration configuration;
};

TEST_F(ConfiguredChipsTest, ALabelOfTheConfigurationCountsAsTheDrivers) {
    addChannel(addChip("nct6798", board), SensorKind::voltage, 7, "in7");
    configuration.add(board, "in7", "+12V");
    apply();
    EXPECT_THAT(labels(), ElementsAre("+12V"));
    EXPECT_TRUE(chips[0].channels[0].isLabelled);
}

TEST_F(ConfiguredChipsTest, ALabelOfTheConfigurationReplacesTheDrivers) {
    addChannel(addChip("nct6798", board), SensorKind::temperature, 1, "temp1", "SYSTIN");
    configuration.add(board, "temp1", "Case");
    apply();
    EXPECT_THAT(labels(), ElementsAre("Case"));
}

TEST_F(ConfiguredChipsTest, AFeatureWithoutALabelOfItsOwnStaysUnlabelled) {
    addChannel(addChip("nct6798", board), SensorKind::temperature, 3, "temp3");
    configuration.add(board, "temp3", "temp3");
    apply();
    EXPECT_THAT(labels(), ElementsAre("temp3"));
    EXPECT_FALSE(chips[0].channels[0].isLabelled);
}

TEST_F(ConfiguredChipsTest, AnIgnoredFeatureLosesAllItsChannels) {
    SensorChip& chip = addChip("nct6798", board);
    addChannel(chip, SensorKind::fan, 1, "fan1");
    addChannel(chip, SensorKind::fan, 2, "fan2");
    addChannel(chip, SensorKind::fanMinimum, 1, "fan1");
    configuration.add(board, "fan2", "fan2");
    apply();
    EXPECT_THAT(labels(), ElementsAre("fan2"));
}

TEST_F(ConfiguredChipsTest, AChipWhoseFeaturesAreAllIgnoredIsGone) {
    addChannel(addChip("acpitz", "acpitz-acpi-0"), SensorKind::temperature, 1, "temp1");
    addChannel(addChip("nct6798", board), SensorKind::temperature, 1, "temp1", "SYSTIN");
    configuration.chips["acpitz-acpi-0"] = {};
    apply();
    EXPECT_THAT(labels(), ElementsAre("SYSTIN"));
    EXPECT_EQ(chips.size(), 1U);
}

TEST_F(ConfiguredChipsTest, AChipThatTheConfigurationDoesNotKnowStays) {
    addChannel(addChip("nct6798", board), SensorKind::temperature, 1, "temp1", "SYSTIN");
    apply();
    EXPECT_THAT(labels(), ElementsAre("SYSTIN"));
}

TEST_F(ConfiguredChipsTest, AKindThatLibsensorsDoesNotKnowIsNotIgnored) {
    SensorChip& chip = addChip("amdgpu", "amdgpu-pci-0300");
    addChannel(chip, SensorKind::frequency, 1, "freq1", "sclk");
    addChannel(chip, SensorKind::percent, 1, "pwm1");
    addChannel(chip, SensorKind::fanTarget, 1, "fan1");
    configuration.chips["amdgpu-pci-0300"] = {};
    apply();
    EXPECT_THAT(labels(), ElementsAre("sclk", "pwm1", "fan1"));
}

TEST_F(ConfiguredChipsTest, OnlyVoltagesCountFromZero) {
    SensorChip& chip = addChip("odd", "odd-virtual-0");
    addChannel(chip, SensorKind::temperature, 0, "temp0");
    addChannel(chip, SensorKind::voltage, 0, "in0");
    configuration.chips["odd-virtual-0"] = {};
    apply();
    EXPECT_THAT(labels(), ElementsAre("temp0"));
}

TEST_F(ConfiguredChipsTest, TheLabelsOfApplesControllerAreItsKeys) {
    addChannel(addChip("applesmc", "applesmc-isa-0300"), SensorKind::temperature, 1, "temp1", "TC0P");
    configuration.add("applesmc-isa-0300", "temp1", "Processor");
    apply();
    EXPECT_THAT(labels(), ElementsAre("TC0P"));
}

TEST_F(ConfiguredChipsTest, TheConfigurationIsRefreshedWithAllChips) {
    addChip("acpitz", "acpitz-acpi-0");
    addChip("nct6798", board);
    apply();
    EXPECT_THAT(configuration.refreshed, ElementsAre("acpitz-acpi-0", board));
}

TEST_F(ConfiguredChipsTest, OnlyAFeaturesOwnValueIsConfigured) {
    SensorChip& chip = addChip("nct6798", board);
    addChannel(chip, SensorKind::fan, 1, "fan1");
    addChannel(chip, SensorKind::fanMinimum, 1, "fan1");
    addChannel(chip, SensorKind::fan, 2, "fan2");
    fakes::FakeComputation computation;
    configuration.add(board, "fan1", "fan1", &computation);
    EXPECT_NE(configuredValue(configuration, chip, chip.channels[0]), nullptr);
    EXPECT_EQ(configuredValue(configuration, chip, chip.channels[1]), nullptr);
    EXPECT_EQ(configuredValue(configuration, chip, chip.channels[2]), nullptr);
}

TEST_F(ConfiguredChipsTest, TellsWhatTheConfigurationIgnores) {
    SensorChip& chip = addChip("nct6798", board);
    addChannel(chip, SensorKind::temperature, 1, "temp1");
    addChannel(chip, SensorKind::temperature, 2, "temp2");
    configuration.add(board, "temp1", "temp1");
    LeftOutChannels leftOut;
    applyConfiguration(chips, configuration, &leftOut);
    ASSERT_EQ(leftOut.size(), 1U);
    EXPECT_EQ(leftOut[0].channel, "nct6798-isa-0290/temp2");
    EXPECT_EQ(leftOut[0].reason, LeftOutReason::ignored);
}

} // namespace
} // namespace kelvinbar::configured_chips_test
