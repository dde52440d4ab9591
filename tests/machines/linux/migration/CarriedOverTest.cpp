// Keys that version 0.1 stored on recorded machines, and keys with numbers that change, through source and
// store.

#include "base/Text.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/sources/KernelSensorSource.h"
#include "tests/FileContent.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/store/StoreFixture.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::carried_over_test {

namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::Pair;

using Keys = std::map<std::string, std::string>;

fs::path treeOf(std::string_view machine) {
    return fs::path(KELVINBAR_FIXTURES) / "linux" / std::string(machine).append(".tree");
}

/// The kernel's sensors of a tree.
struct Kernel {
    explicit Kernel(const fs::path& root)
        : source(root, std::make_shared<fakes::FakeMonotonicClock>(), log.log) {}

    /// What the source knows of keys after a discovery.
    KeyHistory history(const KeySet& listedBefore = {}, bool withFormerKeys = true) {
        keys = source.discoverKeys(listedBefore);
        return source.keyHistory(withFormerKeys);
    }

    fakes::RecordingLog log;
    KernelSensorSource source;
    std::vector<std::string> keys;
};

/// All keys that version 0.1 had on a machine, with the keys of the same readings now.
struct FormerMachine {
    std::string_view tree;
    Keys keys;
};

void PrintTo(const FormerMachine& machine, std::ostream* stream) { *stream << machine.tree; }

const std::vector<FormerMachine> formerMachines{
    {"ryzen-two-ccd",
     {{"TC0T", "k10temp-pci-00c3/temp1"},
      {"TC1D", "k10temp-pci-00c3/temp3"},
      {"TC2D", "k10temp-pci-00c3/temp4"},
      {"TN02", "nvme-pci-0100/temp3"},
      {"TN0D", "nvme-pci-0100/temp2"},
      {"TN0P", "nvme-pci-0100/temp1"}}},
    {"x399-taichi",
     {{"TC0P", "k10temp-pci-00c3/temp1"},
      {"TC0T", "k10temp-pci-00c3/temp2"},
      {"TC1D", "k10temp-pci-00c3/temp3"},
      {"TC1P", "k10temp-pci-00cb/temp1"},
      {"TC1T", "k10temp-pci-00cb/temp2"},
      {"TN0D", "nvme-pci-0800/temp2"},
      {"TN0P", "nvme-pci-0800/temp1"},
      {"TN1D", "nvme-pci-4100/temp2"},
      {"TN1P", "nvme-pci-4100/temp1"},
      {"TN22", "nvme-pci-4200/temp3"},
      {"TN2D", "nvme-pci-4200/temp2"},
      {"TN2P", "nvme-pci-4200/temp1"}}},
    {"asus-wmi-sensors",
     {{"F0Ac", "asus_wmi_sensors-virtual-0/fan5"},
      {"F1Ac", "asus_wmi_sensors-virtual-0/fan6"},
      {"F2Ac", "asus_wmi_sensors-virtual-0/fan7"},
      {"FAN0", "asus_wmi_sensors-virtual-0/fan1"},
      {"FAN1", "asus_wmi_sensors-virtual-0/fan2"},
      {"FAN2", "asus_wmi_sensors-virtual-0/fan3"},
      {"FAN3", "asus_wmi_sensors-virtual-0/fan4"},
      {"TA00", "asus_wmi_sensors-virtual-0/temp4"},
      {"TCPU", "asus_wmi_sensors-virtual-0/temp1"},
      {"TMB1", "asus_wmi_sensors-virtual-0/temp2"},
      {"TN0P", "nvme-pci-0100/temp1"},
      {"TPCH", "asus_wmi_sensors-virtual-0/temp3"},
      {"TS0P", "drivetemp-scsi-1-0/temp1"},
      {"V05R", "asus_wmi_sensors-virtual-0/in2"},
      {"V12R", "asus_wmi_sensors-virtual-0/in1"},
      {"VCOR", "asus_wmi_sensors-virtual-0/in0"},
      {"VSB3", "asus_wmi_sensors-virtual-0/in3"}}},
    {"thinkpad-t490",
     {{"CH0C", "ucsi_source_psy_USBC000:001-isa-0000/curr1"},
      {"CH0V", "ucsi_source_psy_USBC000:001-isa-0000/in0"},
      {"TC0C", "coretemp-isa-0000/temp2"},
      {"TC0T", "coretemp-isa-0000/temp1"},
      {"TC1C", "coretemp-isa-0000/temp3"},
      {"TC2C", "coretemp-isa-0000/temp4"},
      {"TC3C", "coretemp-isa-0000/temp5"},
      {"TPCD", "pch_cannonlake-virtual-0/temp1"}}},
    {"thinkpad-l14",
     {{"B0AV", "BAT0-acpi-0/in0"},
      {"F0Ac", "thinkpad-isa-0000/fan1"},
      {"PG0C", "amdgpu-pci-0700/power1"},
      {"TA00", "thinkpad-isa-0000/temp3"},
      {"TA01", "thinkpad-isa-0000/temp4"},
      {"TA02", "thinkpad-isa-0000/temp5"},
      {"TA03", "thinkpad-isa-0000/temp6"},
      {"TA04", "thinkpad-isa-0000/temp7"},
      {"TCPU", "thinkpad-isa-0000/temp1"},
      {"TG0D", "amdgpu-pci-0700/temp1"},
      {"THRM", "acpitz-virtual-0/temp1"},
      {"TN0P", "nvme-pci-0100/temp1"},
      {"VG0C", "amdgpu-pci-0700/in0"},
      {"VG0N", "amdgpu-pci-0700/in1"}}},
    {"hybrid-notebook",
     {{"B0AP", "BAT0/power_now"},
      {"B0AV", "BAT0-acpi-0/in0"},
      {"B0CT", "BAT0/cycle_count"},
      {"B0DC", "BAT0/energy_full_design"},
      {"B0FC", "BAT0/energy_full"},
      {"B0RM", "BAT0/energy_now"},
      {"B0SC", "BAT0/capacity"},
      {"B0St", "BAT0/status"},
      {"CH0B", "AC/online"},
      {"F0Ac", "amdgpu-pci-0100/fan1"},
      {"PCPC", "intel-rapl-0-0/energy"},
      {"PCPG", "intel-rapl-0-1/energy"},
      {"PCPR", "intel-rapl-0/energy"},
      {"PG0C", "amdgpu-pci-0100/power1"},
      {"TC0T", "coretemp-isa-0000/temp1"},
      {"TG0C", "amdgpu-pci-0100/temp2"},
      {"TG0D", "amdgpu-pci-0100/temp1"},
      {"THRM", "acpitz-virtual-0/temp1"},
      {"TM1P", "spd5118-i2c-0-50/temp1"},
      {"TN02", "nvme-pci-0200/temp3"},
      {"TN0D", "nvme-pci-0200/temp2"},
      {"TN0P", "nvme-pci-0200/temp1"},
      {"TW0P", "iwlwifi_1-virtual-0/temp1"},
      {"Te0C", "coretemp-isa-0000/temp18"},
      {"Te1C", "coretemp-isa-0000/temp19"},
      {"Te2C", "coretemp-isa-0000/temp20"},
      {"Te3C", "coretemp-isa-0000/temp21"},
      {"Te4C", "coretemp-isa-0000/temp22"},
      {"Te5C", "coretemp-isa-0000/temp23"},
      {"Te6C", "coretemp-isa-0000/temp24"},
      {"Te7C", "coretemp-isa-0000/temp25"},
      {"Tp0C", "coretemp-isa-0000/temp2"},
      {"Tp1C", "coretemp-isa-0000/temp6"},
      {"Tp2C", "coretemp-isa-0000/temp10"},
      {"Tp3C", "coretemp-isa-0000/temp14"},
      {"VG0C", "amdgpu-pci-0100/in0"}}},
    {"z370-it8622", {{"FAN0", "it8622-isa-0a40/fan1"},   {"FAN1", "it8622-isa-0a40/fan2"},
                     {"FAN2", "it8622-isa-0a40/fan3"},   {"FAN3", "it8622-isa-0a40/fan4"},
                     {"TA00", "it8622-isa-0a40/temp3"},  {"TA01", "it8622-isa-0a40/temp4"},
                     {"THRM", "acpitz-virtual-0/temp1"}, {"TMB1", "it8622-isa-0a40/temp1"},
                     {"TMB2", "it8622-isa-0a40/temp2"},  {"TP00", "acpitz-virtual-0/temp2"},
                     {"TP01", "acpitz-virtual-0/temp3"}, {"VBAT", "it8622-isa-0a40/in8"},
                     {"VIN0", "it8622-isa-0a40/in0"},    {"VIN1", "it8622-isa-0a40/in1"},
                     {"VIN2", "it8622-isa-0a40/in2"},    {"VIN3", "it8622-isa-0a40/in3"},
                     {"VIN4", "it8622-isa-0a40/in4"},    {"VIN5", "it8622-isa-0a40/in5"},
                     {"VIN6", "it8622-isa-0a40/in6"},    {"VSB3", "it8622-isa-0a40/in7"}}},
};

class FormerMachines : public testing::TestWithParam<FormerMachine> {
  protected:
    fakes::RecordedTree tree{treeOf(GetParam().tree)};
    Kernel kernel{tree.root()};
};

TEST_P(FormerMachines, EachKeyOfVersion01HasAKeyNow) {
    EXPECT_EQ(kernel.history().formerKeys, GetParam().keys);
}

TEST_P(FormerMachines, EachKeyOfNowIsListed) {
    const KeyHistory history = kernel.history();
    ASSERT_TRUE(history.formerKeys.has_value());
    for (const auto& [former, key] : *history.formerKeys) EXPECT_THAT(kernel.keys, Contains(key)) << former;
}

INSTANTIATE_TEST_SUITE_P(Some, FormerMachines, testing::ValuesIn(formerMachines),
                         [](const auto& machine) { return replacedAll(machine.param.tree, "-", "_"); });

// The source

TEST(CarriedOver, FormerKeysAreNotLookedForOnceTheyWereCarriedOver) {
    const fakes::RecordedTree tree(treeOf("ryzen-two-ccd"));
    EXPECT_EQ(Kernel(tree.root()).history({}, false).formerKeys, std::nullopt);
}

TEST(CarriedOver, AKeyThatAControllerListsIsNoFormerKey) {
    const fakes::RecordedTree tree(treeOf("ryzen-two-ccd"));
    const auto beside = Kernel(tree.root()).history({"TC0T"}).formerKeys;
    ASSERT_TRUE(beside.has_value());
    EXPECT_THAT(*beside, Not(Contains(Key("TC0T"))));
    EXPECT_THAT(*beside, Contains(Pair("TC1D", "k10temp-pci-00c3/temp3")));
}

TEST(CarriedOver, KeysOfApplesControllerAreNoFormerKeys) {
    const fakes::RecordedTree tree(treeOf("macbookpro16-1"));
    const auto former = Kernel(tree.root()).history().formerKeys;
    ASSERT_TRUE(former.has_value());
    for (const char* const key : {"F0Ac", "F1Ac", "TC0P", "TC1C", "TG0P"}) {
        EXPECT_THAT(*former, Not(Contains(Key(key))));
    }
    EXPECT_THAT(*former, Contains(Pair("TC0p", "coretemp-isa-0000/temp1")));
    EXPECT_THAT(*former, Contains(Pair("B0AV", "BAT0-acpi-0/in0")));
}

TEST(CarriedOver, PlacesAreThoseOfListedKeysAndEachIsThereOnce) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(KELVINBAR_FIXTURES) / "linux")) {
        if (entry.path().extension() != ".tree") continue;
        const fakes::RecordedTree tree(entry.path());
        Kernel kernel(tree.root());
        std::set<std::string> places;
        for (const auto& [key, place] : kernel.history().places) {
            EXPECT_TRUE(places.insert(place).second) << entry.path() << " " << key;
            EXPECT_THAT(kernel.keys, Contains(key)) << entry.path();
        }
        count += places.size();
    }
    EXPECT_GT(count, 0U);
}

// From the preferences of version 0.1 to the title

class Upgrade : public fakes::StoreFixture {
  protected:
    fakes::RecordingLog log;

    /// As a program that is started, with the preferences of the one before.
    void startOn(const fs::path& root) {
        machineOfStore = makeLinuxMachine(root, machine.clock, log.log);
        makeStore();
        finishPasses();
    }

    void store01(const TextList& pins, const TextList& hidden) {
        if (!pins.empty()) {
            defaults.values.setTextList("KelvinbarMenuBarKeys", pins);
            defaults.values.setText("KelvinbarMenuBarKey", pins.front());
        }
        if (!hidden.empty()) defaults.values.setTextList("KelvinbarHiddenKeys", hidden);
    }

    [[nodiscard]] const std::vector<std::string>& pins() const { return store->menuBarKeys().value(); }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }
};

TEST_F(Upgrade, PinsAndHiddenKeysOfVersion01StayOnTheirSensors) {
    const fakes::RecordedTree tree(treeOf("hybrid-notebook"));
    store01({"TC0T", "TN0P", "B0AV", "TM1P"}, {"Te0C", "TN02", "B0St"});
    startOn(tree.root());
    EXPECT_THAT(pins(), ElementsAre("coretemp-isa-0000/temp1", "nvme-pci-0200/temp1", "BAT0-acpi-0/in0",
                                    "spd5118-i2c-0-50/temp1"));
    EXPECT_THAT(hidden(), ElementsAre("BAT0/status", "coretemp-isa-0000/temp18", "nvme-pci-0200/temp3"));
    EXPECT_EQ(store->menuBarReadings().size(), 4U);
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), store->menuBarKeys().value());
    EXPECT_EQ(defaults.text("KelvinbarMenuBarKey"), "coretemp-isa-0000/temp1");
}

TEST_F(Upgrade, AFanOfTheFormerRegistryStaysPinned) {
    const fakes::RecordedTree tree(treeOf("asus-wmi-sensors"));
    store01({"FAN2", "F0Ac"}, {});
    startOn(tree.root());
    EXPECT_THAT(pins(), ElementsAre("asus_wmi_sensors-virtual-0/fan3", "asus_wmi_sensors-virtual-0/fan5"));
}

TEST_F(Upgrade, KeysOfAMacStayAsTheyAre) {
    const fakes::RecordedTree tree(treeOf("imac-applesmc"));
    store01({"TC0P", "F0Ac"}, {"TA0P"});
    startOn(tree.root());
    EXPECT_THAT(pins(), ElementsAre("TC0P", "F0Ac"));
    EXPECT_THAT(hidden(), ElementsAre("TA0P"));
    EXPECT_THAT(defaults.writes, ElementsAre("KelvinbarKeysCarriedOver"));
}

TEST_F(Upgrade, NothingMoreIsWrittenAtTheNextStart) {
    const fakes::RecordedTree tree(treeOf("hybrid-notebook"));
    store01({"TC0T", "TM1P"}, {"TN02"});
    startOn(tree.root());
    const auto pinned = pins();
    defaults.writes.clear();
    startOn(tree.root());
    EXPECT_EQ(pins(), pinned);
    EXPECT_THAT(defaults.writes, IsEmpty());
}

/// The tree of a machine on which texts were replaced.
fakes::RecordedTree changedTree(std::string_view machine,
                                const std::vector<std::pair<std::string, std::string>>& replacements) {
    std::string description = contentOf(treeOf(machine));
    for (const auto& [from, to] : replacements) {
        EXPECT_TRUE(contains(description, from)) << from;
        description = replacedAll(description, from, to);
    }
    fakes::TemporaryTree folder;
    return fakes::RecordedTree(folder.write("machine.tree", description));
}

TEST_F(Upgrade, APinFollowsItsDeviceToAnotherI2CBus) {
    const fakes::RecordedTree tree(treeOf("hybrid-notebook"));
    store01({"TM1P"}, {});
    startOn(tree.root());
    ASSERT_THAT(pins(), ElementsAre("spd5118-i2c-0-50/temp1"));
    const auto moved = changedTree("hybrid-notebook", {{"/i2c-0/0-0050", "/i2c-7/7-0050"}});
    startOn(moved.root());
    EXPECT_THAT(pins(), ElementsAre("spd5118-i2c-7-50/temp1"));
}

TEST_F(Upgrade, APinFollowsItsDriveToAnotherSCSIHost) {
    const fakes::RecordedTree tree(treeOf("asus-wmi-sensors"));
    store01({"TS0P"}, {});
    startOn(tree.root());
    ASSERT_THAT(pins(), ElementsAre("drivetemp-scsi-1-0/temp1"));
    const auto moved =
        changedTree("asus-wmi-sensors", {{"/host1/target1:0:0/1:0:0:0", "/host5/target5:0:0/5:0:0:0"}});
    startOn(moved.root());
    EXPECT_THAT(pins(), ElementsAre("drivetemp-scsi-5-0/temp1"));
}

TEST_F(Upgrade, AHiddenKeyFollowsACardWhoseDriverIsLoadedAgain) {
    const fakes::RecordedTree tree(treeOf("hybrid-notebook"));
    store01({}, {"TW0P"});
    startOn(tree.root());
    ASSERT_THAT(hidden(), ElementsAre("iwlwifi_1-virtual-0/temp1"));
    const auto reloaded = changedTree("hybrid-notebook", {{"iwlwifi_1", "iwlwifi_2"}});
    startOn(reloaded.root());
    EXPECT_THAT(hidden(), ElementsAre("iwlwifi_2-virtual-0/temp1"));
}

} // namespace
} // namespace kelvinbar::carried_over_test
