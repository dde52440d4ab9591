#include "machines/linux/sources/ProcessorPower.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::processor_power_test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class ProcessorPowerTest : public testing::Test {
  protected:
    void addZone(std::string_view zone, std::string_view name) {
        const fs::path folder = fs::path("sys/class/powercap") / zone;
        tree.write(folder / "name", name);
        tree.write(folder / "energy_uj", "1\n");
        tree.write(folder / "max_energy_range_uj", "262143328850\n");
    }

    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const SensorChip& chip : processorPowerChips(tree.root())) {
            EXPECT_EQ(chip.name, "rapl");
            EXPECT_EQ(chip.channels.size(), 1U);
            for (const SensorChannel& channel : chip.channels) labels.push_back(channel.label);
        }
        return labels;
    }

    fakes::TemporaryTree tree;
};

TEST_F(ProcessorPowerTest, EveryPowerZoneIsAChipInNaturalOrder) {
    addZone("intel-rapl:1", "package-1\n");
    addZone("intel-rapl:0", "package-0\n");
    addZone("intel-rapl:0:10", "dram\n");
    addZone("intel-rapl:0:2", "uncore\n");
    addZone("intel-rapl:0:0", "core\n");
    EXPECT_THAT(labels(), ElementsAre("package-0", "core", "uncore", "dram", "package-1"));
}

TEST_F(ProcessorPowerTest, AZoneIsNamedAfterItsEntryAndKnowsItsSocket) {
    addZone("intel-rapl:1", "package-1\n");
    addZone("intel-rapl:1:0", "core\n");
    addZone("intel-rapl:2", "psys\n");
    const auto chips = processorPowerChips(tree.root());
    ASSERT_EQ(chips.size(), 3U);
    EXPECT_EQ(chips[0].sensorsName, "intel-rapl-1");
    EXPECT_EQ(chips[0].channels.at(0).feature, "energy");
    EXPECT_EQ(chips[0].place, 1);
    EXPECT_EQ(chips[1].sensorsName, "intel-rapl-1-0");
    EXPECT_EQ(chips[1].place, 1);
    EXPECT_EQ(chips[2].place, std::nullopt);
}

TEST_F(ProcessorPowerTest, AZonesCounterIsEnergyInMillionthsWithItsRange) {
    addZone("intel-rapl:0:1", "core\n");
    const auto chips = processorPowerChips(tree.root());
    ASSERT_EQ(chips.size(), 1U);
    EXPECT_EQ(chips[0].device, "intel-rapl:0:1");
    ASSERT_EQ(chips[0].channels.size(), 1U);
    const SensorChannel& counter = chips[0].channels[0];
    const fs::path folder = tree.root() / "sys/class/powercap/intel-rapl:0:1";
    EXPECT_EQ(counter.kind, SensorKind::energy);
    EXPECT_TRUE(counter.isLabelled);
    EXPECT_EQ(counter.countsPerUnit, 1e6);
    EXPECT_EQ(counter.file, folder / "energy_uj");
    EXPECT_EQ(counter.range, folder / "max_energy_range_uj");
}

TEST_F(ProcessorPowerTest, WhatCountsAPackageOnceMoreOrIsNoZoneIsLeftOut) {
    addZone("intel-rapl", "control type\n");
    addZone("intel-rapl-mmio", "control type\n");
    addZone("intel-rapl-mmio:0", "package-0\n");
    addZone("dtpm:0", "other\n");
    EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(ProcessorPowerTest, AZoneWithoutANameIsLeftOut) {
    addZone("intel-rapl:0", "\n");
    addZone("intel-rapl:1", "package-1\n");
    tree.write("sys/class/powercap/intel-rapl:2/energy_uj", "1\n");
    EXPECT_THAT(labels(), ElementsAre("package-1"));
}

TEST_F(ProcessorPowerTest, ATreeWithoutZonesHasNone) { EXPECT_THAT(labels(), IsEmpty()); }

} // namespace
} // namespace kelvinbar::processor_power_test
