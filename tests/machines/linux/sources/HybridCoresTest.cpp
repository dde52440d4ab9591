#include "machines/linux/sources/HybridCores.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::hybrid_cores_test {

namespace {

using testing::ElementsAre;

class HybridCoresTest : public testing::Test {
  protected:
    void addProcessor(int number, int core, int package = 0) {
        const std::string folder =
            std::string("sys/devices/system/cpu/cpu").append(std::to_string(number)).append("/topology/");
        tree.write(folder + "core_id", std::to_string(core).append("\n"));
        tree.write(folder + "physical_package_id", std::to_string(package).append("\n"));
    }

    /// Two cores of two threads each, and three cores of one.
    void addHybridProcessor() {
        tree.write("sys/devices/cpu_core/cpus", "0-3\n");
        tree.write("sys/devices/cpu_atom/cpus", "4-6\n");
        addProcessor(0, 0);
        addProcessor(1, 0);
        addProcessor(2, 4);
        addProcessor(3, 4);
        addProcessor(4, 8);
        addProcessor(5, 9);
        addProcessor(6, 12);
    }

    static SensorChip chip(std::string_view name, std::string_view device,
                           const std::vector<std::string>& labels) {
        SensorChip chip;
        chip.name = name;
        chip.device = device;
        for (const std::string& label : labels) {
            chip.channels.emplace_back(SensorKind::temperature, static_cast<int>(chip.channels.size()) + 1);
            chip.channels.back().label = label;
            chip.channels.back().isLabelled = true;
        }
        return chip;
    }

    [[nodiscard]] std::vector<std::string> renamed(std::vector<SensorChip> chips) const {
        nameHybridCores(tree.root(), chips);
        std::vector<std::string> labels;
        for (const SensorChip& named : chips) {
            for (const SensorChannel& channel : named.channels) labels.push_back(channel.label);
        }
        return labels;
    }

    fakes::TemporaryTree tree;
};

TEST_F(HybridCoresTest, CoresAreToldApartAndCountedFromZeroByKind) {
    addHybridProcessor();
    EXPECT_THAT(renamed({chip("coretemp", "platform/coretemp.0",
                              {"Package id 0", "Core 0", "Core 4", "Core 8", "Core 9", "Core 12"})}),
                ElementsAre("Package id 0", "P-Core 0", "P-Core 1", "E-Core 0", "E-Core 1", "E-Core 2"));
}

TEST_F(HybridCoresTest, ACoreThatIsNotListedKeepsItsName) {
    addHybridProcessor();
    EXPECT_THAT(
        renamed({chip("coretemp", "platform/coretemp.0", {"Core 1", "Core x", "Core", "core 0", "Core 12"})}),
        ElementsAre("Core 1", "Core x", "Core", "core 0", "E-Core 2"));
}

TEST_F(HybridCoresTest, OtherChipsKeepTheirNames) {
    addHybridProcessor();
    EXPECT_THAT(renamed({chip("k10temp", "platform/coretemp.0", {"Core 0"}),
                         chip("coretemp", "platform/coretemp.0", {"Core 0"})}),
                ElementsAre("Core 0", "P-Core 0"));
}

TEST_F(HybridCoresTest, AProcessorWithOneKindOfCoresKeepsItsNames) {
    addHybridProcessor();
    tree.remove("sys/devices/cpu_atom");
    EXPECT_THAT(renamed({chip("coretemp", "platform/coretemp.0", {"Core 0", "Core 8"})}),
                ElementsAre("Core 0", "Core 8"));
    tree.remove("sys/devices");
    EXPECT_THAT(renamed({chip("coretemp", "platform/coretemp.0", {"Core 0"})}), ElementsAre("Core 0"));
}

TEST_F(HybridCoresTest, EveryPackageIsNamedByItsOwnCores) {
    tree.write("sys/devices/cpu_core/cpus", "0,2\n");
    tree.write("sys/devices/cpu_atom/cpus", "1,3\n");
    addProcessor(0, 0, 0);
    addProcessor(1, 1, 0);
    addProcessor(2, 1, 1);
    addProcessor(3, 0, 1);
    EXPECT_THAT(renamed({chip("coretemp", "platform/coretemp.0", {"Core 0", "Core 1"}),
                         chip("coretemp", "platform/coretemp.1", {"Core 0", "Core 1"})}),
                ElementsAre("P-Core 0", "E-Core 0", "E-Core 1", "P-Core 1"));
}

} // namespace
} // namespace kelvinbar::hybrid_cores_test
