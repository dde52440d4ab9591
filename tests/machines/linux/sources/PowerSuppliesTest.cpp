#include "machines/linux/sources/PowerSupplies.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::power_supplies_test {

namespace {

namespace fs = std::filesystem;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;
using enum SensorKind;

class PowerSuppliesTest : public testing::Test {
  protected:
    void write(const fs::path& file, std::string_view content) {
        tree.write("sys/class/power_supply" / file, content);
    }

    /// The channel for `attribute` of the only supply.
    [[nodiscard]] std::optional<SensorChannel> channel(std::string_view attribute) const {
        const auto chips = powerSupplyChips(tree.root());
        EXPECT_EQ(chips.size(), 1U);
        for (const SensorChip& chip : chips) {
            const auto found = std::ranges::find(chip.channels, attribute, &SensorChannel::label);
            if (found != chip.channels.end()) return *found;
        }
        return std::nullopt;
    }

    /// `counts` of the attribute, in the unit of its kind.
    [[nodiscard]] std::optional<double> converted(std::string_view attribute, double counts) const {
        const auto found = channel(attribute);
        return found ? std::optional(counts / found->countsPerUnit) : std::nullopt;
    }

    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const SensorChip& chip : powerSupplyChips(tree.root())) {
            for (const SensorChannel& found : chip.channels) labels.push_back(found.label);
        }
        return labels;
    }

    [[nodiscard]] std::vector<std::string> chipNames() const {
        std::vector<std::string> names;
        for (const SensorChip& chip : powerSupplyChips(tree.root())) names.push_back(chip.name);
        return names;
    }

    fakes::TemporaryTree tree;
};

TEST_F(PowerSuppliesTest, ASupplyIsNamedAfterItsEntryAndItsChannelsAfterTheirFiles) {
    write("BAT0/type", "Battery\n");
    write("BAT0/voltage_now", "12000000\n");
    EXPECT_EQ(powerSupplyChips(tree.root()).at(0).sensorsName, "BAT0");
    EXPECT_EQ(channel("voltage_now").value_or(SensorChannel()).feature, "voltage_now");
}

TEST_F(PowerSuppliesTest, EveryAttributeIsAChannelWithItsKindAndScale) {
    struct Expected {
        std::string_view attribute;
        SensorKind kind;
        double counts;
        double value;
    };

    for (const Expected& expected : {Expected{"voltage_now", voltage, 12'345'678, 12.345678},
                                     {"current_now", current, -1'500'000, -1.5},
                                     {"power_now", power, 9'250'000, 9.25},
                                     {"charge_now", charge, 4'321'000, 4321},
                                     {"charge_full", charge, 4'500'500, 4500.5},
                                     {"charge_full_design", charge, 5'000'000, 5000},
                                     {"cycle_count", count, 123, 123},
                                     {"capacity", percent, 87, 87},
                                     {"temp", temperature, 305, 30.5},
                                     {"time_to_empty_now", duration, 5400, 90},
                                     {"time_to_full_now", duration, 90, 1.5},
                                     {"status", text, 1, 1},
                                     {"online", flag, 1, 1}}) {
        SCOPED_TRACE(expected.attribute);
        tree.remove("sys");
        write(fs::path("BAT0") / expected.attribute, "1\n");
        const auto found = channel(expected.attribute);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->kind, expected.kind);
        EXPECT_TRUE(found->isLabelled);
        EXPECT_EQ(found->file, tree.root() / "sys/class/power_supply/BAT0" / expected.attribute);
        EXPECT_THAT(converted(expected.attribute, expected.counts), Optional(DoubleEq(expected.value)));
    }
}

TEST_F(PowerSuppliesTest, OtherAttributesAreNoChannels) {
    for (const std::string_view file : {"type", "technology", "manufacturer", "model_name", "serial_number",
                                        "alarm", "uevent", "capacity_level", "voltage_min_design"}) {
        write(fs::path("BAT0") / file, "1\n");
    }
    EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(PowerSuppliesTest, BatteriesAndChargersAreToldApart) {
    write("AC/type", "Mains\n");
    write("AC/online", "1\n");
    write("BAT0/type", "Battery\n");
    write("BAT0/capacity", "50\n");
    write("ucsi/type", "USB\n");
    write("untold/online", "1\n");
    EXPECT_THAT(chipNames(), ElementsAre("charger:AC", "battery:BAT0", "charger:ucsi", "charger:untold"));
    const auto chips = powerSupplyChips(tree.root());
    ASSERT_EQ(chips.size(), 4U);
    EXPECT_EQ(chips[1].device, "BAT0");
    EXPECT_EQ(chips[1].folder, tree.root() / "sys/class/power_supply/BAT0");
}

TEST_F(PowerSuppliesTest, SuppliesComeInNaturalOrder) {
    for (const std::string_view name : {"BAT10", "BAT2", "BAT1"}) write(fs::path(name) / "type", "Battery\n");
    EXPECT_THAT(chipNames(), ElementsAre("battery:BAT1", "battery:BAT2", "battery:BAT10"));
}

TEST_F(PowerSuppliesTest, SuppliesOfConnectedDevicesComeLast) {
    write("AAA_mouse/type", "Battery\n");
    write("AAA_mouse/scope", "Device\n");
    write("BAT0/type", "Battery\n");
    write("BAT0/scope", "System\n");
    write("BAT1/type", "Battery\n");
    EXPECT_THAT(chipNames(), ElementsAre("battery:BAT0", "battery:BAT1", "peripheral:AAA_mouse"));
}

TEST_F(PowerSuppliesTest, ABatteryThatIsNotPresentIsLeftOut) {
    write("BAT0/type", "Battery\n");
    write("BAT0/present", "0\n");
    write("BAT0/voltage_now", "0\n");
    write("BAT1/type", "Battery\n");
    write("BAT1/present", "1\n");
    EXPECT_THAT(chipNames(), ElementsAre("battery:BAT1"));
}

TEST_F(PowerSuppliesTest, ATreeWithoutSuppliesGivesNone) {
    EXPECT_THAT(powerSupplyChips(tree.root()), IsEmpty());
}

// Energy

TEST_F(PowerSuppliesTest, EnergyCountsAsChargeAtTheLowestDesignVoltage) {
    write("BAT0/type", "Battery\n");
    write("BAT0/voltage_min_design", "11400000\n");
    write("BAT0/voltage_max_design", "13000000\n");
    write("BAT0/energy_now", "1\n");
    write("BAT0/energy_full", "1\n");
    write("BAT0/energy_full_design", "1\n");
    EXPECT_THAT(labels(), UnorderedElementsAre("energy_now", "energy_full", "energy_full_design"));
    // 57 Wh at 11.4 V are 5 Ah.
    for (const std::string_view attribute : {"energy_now", "energy_full", "energy_full_design"}) {
        SCOPED_TRACE(attribute);
        EXPECT_THAT(converted(attribute, 57'000'000), Optional(DoubleEq(5000)));
        EXPECT_EQ(channel(attribute)->kind, charge);
    }
}

TEST_F(PowerSuppliesTest, WithoutALowestDesignVoltageTheHighestCounts) {
    write("BAT0/voltage_max_design", "12500000\n");
    write("BAT0/energy_now", "1\n");
    EXPECT_THAT(converted("energy_now", 50'000'000), Optional(DoubleEq(4000)));
    for (const std::string_view useless : {"0\n", "-1\n", "x\n", ""}) {
        SCOPED_TRACE(useless);
        write("BAT0/voltage_min_design", useless);
        EXPECT_THAT(converted("energy_now", 50'000'000), Optional(DoubleEq(4000)));
    }
}

TEST_F(PowerSuppliesTest, WithoutADesignVoltageThatOfNowCounts) {
    write("BAT0/energy_now", "50000000\n");
    write("BAT0/voltage_now", "12500000\n");
    EXPECT_THAT(converted("energy_now", 50'000'000), Optional(DoubleEq(4000)));
    write("BAT0/voltage_min_design", "0\n");
    EXPECT_THAT(converted("energy_now", 50'000'000), Optional(DoubleEq(4000)));
}

TEST_F(PowerSuppliesTest, WithoutAnyVoltageEnergyIsNoChannel) {
    write("BAT0/energy_now", "50000000\n");
    EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(PowerSuppliesTest, AnUninterruptibleSupplyIsABattery) {
    write("ups/type", "UPS\n");
    EXPECT_THAT(chipNames(), ElementsAre("battery:ups"));
}

TEST_F(PowerSuppliesTest, OnlyChargersTellWhetherTheyAreOnline) {
    write("BAT0/type", "Battery\n");
    write("BAT0/online", "1\n");
    EXPECT_THAT(labels(), IsEmpty());
}

/// The number in a mouse's entry increases whenever it connects.
TEST_F(PowerSuppliesTest, ADeviceIsKnownByItsSerialNumber) {
    for (const std::string_view entry : {"hidpp_battery_0", "hidpp_battery_7"}) {
        tree.remove("sys/class/power_supply");
        write(fs::path(entry) / "type", "Battery\n");
        write(fs::path(entry) / "scope", "Device\n");
        write(fs::path(entry) / "serial_number", "4082-aa-bb-cc-dd\n");
        const auto chips = powerSupplyChips(tree.root());
        ASSERT_EQ(chips.size(), 1U);
        EXPECT_EQ(chips[0].device, "4082-aa-bb-cc-dd");
        EXPECT_EQ(chips[0].stableName, "peripheral:");
    }
}

TEST_F(PowerSuppliesTest, ChargeIsPreferredToTheEnergyThatTellsTheSame) {
    write("BAT0/voltage_min_design", "11400000\n");
    write("BAT0/charge_now", "1\n");
    write("BAT0/energy_now", "1\n");
    write("BAT0/energy_full", "1\n");
    EXPECT_THAT(labels(), UnorderedElementsAre("charge_now", "energy_full"));
}

} // namespace
} // namespace kelvinbar::power_supplies_test
