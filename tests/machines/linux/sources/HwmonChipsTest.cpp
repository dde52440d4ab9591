#include "machines/linux/sources/HwmonChips.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::hwmon_chips_test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using enum SensorKind;

class HwmonChipsTest : public testing::Test {
  protected:
    fs::path write(std::string_view file, std::string_view content) {
        return tree.write(folder / file, content);
    }

    /// The only chip of the tree.
    [[nodiscard]] SensorChip onlyChip() const {
        auto chips = hwmonChips(tree.root());
        EXPECT_EQ(chips.size(), 1U);
        return chips.empty() ? SensorChip{} : std::move(chips.front());
    }

    /// Its only channel of that kind.
    [[nodiscard]] SensorChannel onlyChannel(SensorKind kind) const {
        const SensorChip chip = onlyChip();
        EXPECT_EQ(std::ranges::count(chip.channels, kind, &SensorChannel::kind), 1);
        const auto channel = std::ranges::find(chip.channels, kind, &SensorChannel::kind);
        return channel == chip.channels.end() ? SensorChannel() : *channel;
    }

    [[nodiscard]] std::vector<std::pair<SensorKind, int>> kindsAndNumbers() const {
        std::vector<std::pair<SensorKind, int>> channels;
        for (const SensorChannel& channel : onlyChip().channels) {
            channels.emplace_back(channel.kind, channel.number);
        }
        return channels;
    }

    fakes::TemporaryTree tree;
    fs::path folder = "sys/class/hwmon/hwmon0";
};

// Channels

TEST_F(HwmonChipsTest, EveryKindOfChannelIsFoundWithItsScale) {
    struct Expected {
        std::string_view file;
        SensorKind kind;
        int number;
        double countsPerUnit;
    };

    for (const Expected& expected : {Expected{"temp1_input", temperature, 1, 1e3},
                                     {"in0_input", voltage, 0, 1e3},
                                     {"curr4_input", current, 4, 1e3},
                                     {"power1_input", power, 1, 1e6},
                                     {"power2_average", power, 2, 1e6},
                                     {"energy3_input", energy, 3, 1e6},
                                     {"fan2_min", fanMinimum, 2, 1},
                                     {"fan2_max", fanMaximum, 2, 1},
                                     {"fan2_target", fanTarget, 2, 1},
                                     {"fan2_output", fanTarget, 2, 1},
                                     {"fan2_safe", fanSafe, 2, 1},
                                     {"fan2_manual", fanMode, 2, 1},
                                     {"freq1_input", frequency, 1, 1e6},
                                     {"humidity1_input", humidity, 1, 1e3}}) {
        SCOPED_TRACE(expected.file);
        tree.remove("sys");
        const fs::path file = write(expected.file, "1\n");
        EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{expected.kind, expected.number}}));
        EXPECT_EQ(onlyChannel(expected.kind).countsPerUnit, expected.countsPerUnit);
        EXPECT_EQ(onlyChannel(expected.kind).file, file);
    }
}

TEST_F(HwmonChipsTest, AFanIsFoundInRoundsAMinute) {
    const fs::path file = write("fan2_input", "1200\n");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{fan, 2}}));
    EXPECT_EQ(onlyChannel(fan).countsPerUnit, 1);
    EXPECT_EQ(onlyChannel(fan).file, file);
}

TEST_F(HwmonChipsTest, NumbersMayHaveGapsAndCountNaturally) {
    for (const std::string_view file : {"temp10_input", "temp2_input", "temp1_input", "temp120_input"}) {
        write(file, "1000\n");
    }
    EXPECT_EQ(
        kindsAndNumbers(),
        (std::vector{std::pair{temperature, 1}, {temperature, 2}, {temperature, 10}, {temperature, 120}}));
}

TEST_F(HwmonChipsTest, AChannelIsFoundThatCannotBeReadAtTheMoment) {
    write("temp1_input", "");
    tree.makeDirectory(folder / "temp2_input");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{temperature, 1}, {temperature, 2}}));
}

TEST_F(HwmonChipsTest, AChannelKnowsTheKernelsNameForIt) {
    write("temp3_input", "1\n");
    EXPECT_EQ(onlyChannel(temperature).feature, "temp3");
}

TEST_F(HwmonChipsTest, WhereNoFanIsMeasuredItsOutputIsFoundInPercent) {
    const fs::path file = write("pwm2", "128\n");
    write("pwm2_enable", "1\n");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{percent, 2}}));
    EXPECT_EQ(onlyChannel(percent).feature, "pwm2");
    EXPECT_EQ(onlyChannel(percent).file, file);
    EXPECT_DOUBLE_EQ(255 / onlyChannel(percent).countsPerUnit, 100);
}

TEST_F(HwmonChipsTest, WhereAFanIsMeasuredOutputsAreNoChannels) {
    write("fan1_input", "1200\n");
    write("pwm1", "128\n");
    write("pwm2", "128\n");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{fan, 1}}));
}

// Names of chips

/// A chip of a drive: its device is in a class, and that device links to the one on the bus.
class ChipOfADrive : public testing::Test {
  protected:
    ChipOfADrive() {
        tree.write(drive / "hwmon3/name", "nvme\n");
        link("sys/class/hwmon/hwmon3", tree.root() / drive / "hwmon3");
        link(drive / "hwmon3/device", "../../nvme0");
        link(drive / "subsystem", "../../../../../class/nvme");
        link(drive / "device", "../../../0000:01:00.0");
        link(controller / "subsystem", "../../../bus/pci");
    }

    void link(const fs::path& path, const fs::path& target) {
        fs::create_directories((tree.root() / path).parent_path());
        fs::create_symlink(target, tree.root() / path);
    }

    [[nodiscard]] SensorChip onlyChip() const { return hwmonChips(tree.root()).at(0); }

    fakes::TemporaryTree tree;
    fs::path controller = "sys/devices/pci0000:00/0000:01:00.0";
    fs::path drive = controller / "nvme/nvme0";
};

TEST_F(ChipOfADrive, IsNamedAsLibsensorsNamesItAfterTheDeviceOnTheBus) {
    EXPECT_EQ(onlyChip().sensorsName, "nvme-pci-0100");
}

TEST_F(ChipOfADrive, HasTheDrivesModel) {
    EXPECT_EQ(onlyChip().model, "");
    tree.write(drive / "model", "Samsung SSD 980             \n");
    EXPECT_EQ(onlyChip().model, "Samsung SSD 980");
}

TEST_F(ChipOfADrive, HasNoNetworkInterface) { EXPECT_EQ(onlyChip().network, ""); }

TEST_F(ChipOfADrive, HasTheModelOfTheDriveBelowAController) {
    tree.remove("sys/class/hwmon/hwmon3");
    tree.remove(drive / "hwmon3");
    tree.write(controller / "hwmon/hwmon3/name", "nvme\n");
    link("sys/class/hwmon/hwmon3", tree.root() / controller / "hwmon/hwmon3");
    link(controller / "hwmon/hwmon3/device", "../../../0000:01:00.0");
    tree.write(drive / "model", "Samsung SSD 980\n");
    EXPECT_EQ(onlyChip().model, "Samsung SSD 980");
    EXPECT_EQ(onlyChip().sensorsName, "nvme-pci-0100");
}

class ChipOfANetworkCard : public testing::Test {
  protected:
    /// A chip whose device is in that folder.
    void addChip(const std::string& number, const fs::path& device) {
        const fs::path chip = device / ("hwmon" + number);
        tree.write(chip / "name", "phy\n");
        fs::create_directories(tree.root() / "sys/class/hwmon");
        fs::create_symlink(tree.root() / chip, tree.root() / "sys/class/hwmon" / chip.filename());
        fs::create_symlink("..", tree.root() / chip / "device");
    }

    [[nodiscard]] std::vector<std::string> interfaces() const {
        std::vector<std::string> found;
        for (const SensorChip& chip : hwmonChips(tree.root())) found.push_back(chip.network);
        return found;
    }

    fakes::TemporaryTree tree;
    fs::path card = "sys/devices/pci0000:00/0000:05:00.0";
};

TEST_F(ChipOfANetworkCard, HasTheCardsInterface) {
    tree.makeDirectory(card / "net/wlp5s0");
    addChip("4", card / "ieee80211/phy0");
    EXPECT_THAT(interfaces(), ElementsAre("wlp5s0"));
}

TEST_F(ChipOfANetworkCard, HasTheInterfaceOfItsOwnDeviceBeforeThatOfOneAbove) {
    tree.makeDirectory(card / "net/eth0");
    tree.makeDirectory(card / "port1/net/eth1");
    addChip("1", card / "port1");
    addChip("2", card / "port2");
    EXPECT_THAT(interfaces(), ElementsAre("eth1", "eth0"));
}

TEST_F(ChipOfANetworkCard, HasTheInterfaceThatSeveralChipsShare) {
    tree.makeDirectory(card / "net/enp5s0");
    addChip("1", card / "mdio/phy1");
    addChip("2", card / "mdio/phy2");
    EXPECT_THAT(interfaces(), ElementsAre("enp5s0", "enp5s0"));
}

TEST_F(ChipOfANetworkCard, HasNoInterfaceThatIsFourFoldersAbove) {
    tree.makeDirectory(card / "net/enp5s0");
    addChip("1", card / "a/b/c");
    EXPECT_THAT(interfaces(), ElementsAre("enp5s0"));
    tree.remove("sys/class/hwmon/hwmon1");
    addChip("2", card / "a/b/c/d");
    EXPECT_THAT(interfaces(), ElementsAre(""));
}

TEST_F(HwmonChipsTest, AChipWithoutADeviceIsVirtual) {
    write("name", "bogus\n");
    EXPECT_EQ(onlyChip().sensorsName, "bogus-virtual-0");
}

TEST_F(HwmonChipsTest, AFolderInPlaceOfTheLinkToTheDeviceIsNoStepToABus) {
    write("name", "bogus\n");
    write("device/uevent", "PCI_SLOT_NAME=0000:00:18.3\n");
    EXPECT_EQ(onlyChip().sensorsName, "bogus-virtual-0");
}

TEST_F(HwmonChipsTest, ALinkToNothingNamesTheDeviceOnTheBus) {
    write("name", "bogus\n");
    fs::create_symlink("../../../0000:01:00.0", tree.root() / folder / "device");
    EXPECT_EQ(onlyChip().sensorsName, "bogus-pci-0100");
    EXPECT_EQ(onlyChip().network, "");
}

TEST_F(HwmonChipsTest, OtherFilesAreNoChannels) {
    for (const std::string_view file :
         {"temp1_inputx",  "tempX_input",  "temp_input",     "temp99999999_input",
          "pwm01",         "pwm",          "pwm1_enable",    "intrusion0_alarm",
          "temp1_max",     "temp1_crit",   "temp1_label",    "temp1_input_highest",
          "in1_min",       "temp-1_input", "temp 1_input",   "temp1x_input",
          "xtemp1_input",  "temp1",        "temp1_",         "_input",
          "input",         "name",         "uevent",         "power1_cap",
          "temp1_average", "in1_average",  "curr1_average",  "fan1_pulses",
          "cpu0_vid",      "Temp1_input",  "temp65536_input"}) {
        write(file, "1\n");
    }
    EXPECT_THAT(onlyChip().channels, IsEmpty());
}

TEST_F(HwmonChipsTest, AFolderNamedPowerIsNoChannel) {
    write("power/runtime_status", "active\n");
    write("power/control", "auto\n");
    EXPECT_THAT(onlyChip().channels, IsEmpty());
}

// Labels

TEST_F(HwmonChipsTest, ALabelIsTakenWithoutTheWhiteSpaceAroundIt) {
    for (const auto& [content, label] : {std::pair{"Core 0\n", "Core 0"},
                                         {"  Left side  \n", "Left side"},
                                         {"Tctl", "Tctl"},
                                         {"\tA\tB\n", "A\tB"}}) {
        SCOPED_TRACE(content);
        write("temp1_input", "1000\n");
        write("temp1_label", content);
        EXPECT_EQ(onlyChannel(temperature).label, label);
        EXPECT_TRUE(onlyChannel(temperature).isLabelled);
    }
}

TEST_F(HwmonChipsTest, AChannelWithoutALabelGoesByItsFilesPrefix) {
    write("temp3_input", "1000\n");
    write("in0_input", "1000\n");
    write("power2_average", "1000\n");
    EXPECT_EQ(onlyChannel(temperature).label, "temp3");
    EXPECT_FALSE(onlyChannel(temperature).isLabelled);
    EXPECT_EQ(onlyChannel(voltage).label, "in0");
    EXPECT_EQ(onlyChannel(power).label, "power2");
}

TEST_F(HwmonChipsTest, ABlankOrUnreadableLabelIsNone) {
    write("temp3_input", "1000\n");
    for (const std::string_view content : {"", "\n", "  \n"}) {
        write("temp3_label", content);
        EXPECT_EQ(onlyChannel(temperature).label, "temp3");
        EXPECT_FALSE(onlyChannel(temperature).isLabelled);
    }
    tree.remove(folder / "temp3_label");
    tree.makeDirectory(folder / "temp3_label");
    EXPECT_EQ(onlyChannel(temperature).label, "temp3");
}

TEST_F(HwmonChipsTest, ALabelWithoutAValueIsNoChannel) {
    write("temp1_label", "Core 0\n");
    write("temp2_input", "1000\n");
    write("temp2_label", "Core 1\n");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{temperature, 2}}));
    EXPECT_EQ(onlyChannel(temperature).label, "Core 1");
}

TEST_F(HwmonChipsTest, TheAttributesOfAFanHaveItsLabel) {
    write("fan1_input", "1200\n");
    write("fan1_label", "Exhaust  \n");
    write("fan1_min", "1000\n");
    write("fan1_max", "6000\n");
    EXPECT_EQ(onlyChannel(fanMinimum).label, "Exhaust");
    EXPECT_EQ(onlyChannel(fanMaximum).label, "Exhaust");
    EXPECT_TRUE(onlyChannel(fanMaximum).isLabelled);
}

// Two files with the same value

TEST_F(HwmonChipsTest, TheAveragePowerIsTakenOnlyWithoutAPowerOfTheMoment) {
    const fs::path average = write("power1_average", "1\n");
    EXPECT_EQ(onlyChannel(power).file, average);
    const fs::path input = write("power1_input", "1\n");
    EXPECT_EQ(onlyChannel(power).file, input);
}

TEST_F(HwmonChipsTest, AFanHasOneTarget) {
    write("fan1_output", "1\n");
    const fs::path target = write("fan1_target", "1\n");
    EXPECT_EQ(onlyChannel(fanTarget).file, target);
}

// Disabled and faulty channels

TEST_F(HwmonChipsTest, AChannelThatIsSwitchedOffStaysWithoutAFile) {
    write("temp1_input", "1000\n");
    write("temp1_enable", "0\n");
    EXPECT_EQ(onlyChannel(temperature).file, "");
    EXPECT_EQ(onlyChannel(temperature).label, "temp1");
}

TEST_F(HwmonChipsTest, AChannelThatIsSwitchedOnHasItsFile) {
    const fs::path file = write("temp1_input", "1000\n");
    for (const std::string_view content : {"1\n", "2\n", "", "x\n"}) {
        SCOPED_TRACE(content);
        write("temp1_enable", content);
        EXPECT_EQ(onlyChannel(temperature).file, file);
    }
    write("temp2_enable", "0\n");
    EXPECT_EQ(onlyChannel(temperature).file, file) << "another channel's switch";
}

TEST_F(HwmonChipsTest, TheFileThatTellsOfAFaultBelongsToTheMeasurement) {
    write("fan1_input", "1200\n");
    write("fan1_min", "600\n");
    const fs::path fault = write("fan1_fault", "0\n");
    write("temp1_input", "1000\n");
    EXPECT_EQ(onlyChannel(fan).fault, fault);
    EXPECT_EQ(onlyChannel(fanMinimum).fault, "") << "a limit is no measurement";
    EXPECT_EQ(onlyChannel(temperature).fault, "");
}

// Chips

TEST_F(HwmonChipsTest, AChipHasItsNameItsFolderAndItsDevice) {
    write("name", "k10temp\n");
    write("device/uevent", "PCI_SLOT_NAME=0000:00:18.3\n");
    const SensorChip chip = onlyChip();
    EXPECT_EQ(chip.name, "k10temp");
    EXPECT_EQ(chip.folder, tree.root() / folder);
    EXPECT_THAT(chip.device, testing::HasSubstr("0000:00:18.3"));
}

TEST_F(HwmonChipsTest, AnOldDriversChannelsAreFoundOnTheDevice) {
    write("device/name", "applesmc\n");
    const fs::path file = write("device/temp1_input", "45000\n");
    write("device/temp1_label", "TC0P\n");
    const SensorChip chip = onlyChip();
    EXPECT_EQ(chip.name, "applesmc");
    EXPECT_EQ(chip.folder, tree.root() / folder / "device");
    EXPECT_EQ(onlyChannel(temperature).file, file);
    EXPECT_EQ(onlyChannel(temperature).label, "TC0P");
}

TEST_F(HwmonChipsTest, ANewDriversChannelsAreItsOwnEvenWhenItsDeviceHasAName) {
    write("name", "hidpp_battery_0\n");
    write("temp1_input", "1000\n");
    write("device/name", "a keyboard\n");
    write("device/temp2_input", "1000\n");
    EXPECT_EQ(onlyChip().name, "hidpp_battery_0");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{temperature, 1}}));
}

TEST_F(HwmonChipsTest, AChipWithoutANameHasItsChannelsAllTheSame) {
    write("temp1_input", "1000\n");
    EXPECT_EQ(onlyChip().name, "");
    EXPECT_EQ(kindsAndNumbers(), (std::vector{std::pair{temperature, 1}}));
}

TEST_F(HwmonChipsTest, ChipsAreSortedByTheirDeviceAndNotByTheirNumber) {
    for (const auto& [number, device] :
         {std::pair{"0", "0000:10:00.0"}, {"1", "0000:02:00.0"}, {"2", "0000:01:00.0"}}) {
        const fs::path chip = fs::path("sys/class/hwmon") / std::string("hwmon").append(number);
        tree.makeDirectory(chip);
        fs::create_symlink(std::string("../../../").append(device), tree.root() / chip / "device");
    }
    std::vector<std::string> devices;
    for (const SensorChip& chip : hwmonChips(tree.root())) devices.push_back(chip.device);
    EXPECT_THAT(devices, ElementsAre("0000:01:00.0", "0000:02:00.0", "0000:10:00.0"));
}

TEST_F(HwmonChipsTest, ChipsOfOneDeviceAreSortedByName) {
    for (const auto& [number, name] : {std::pair{"0", "zeta\n"}, {"1", "alpha\n"}}) {
        const fs::path chip = fs::path("sys/class/hwmon") / std::string("hwmon").append(number);
        tree.write(chip / "name", name);
        fs::create_symlink("../../../0000:01:00.0", tree.root() / chip / "device");
    }
    std::vector<std::string> names;
    for (const SensorChip& chip : hwmonChips(tree.root())) names.push_back(chip.name);
    EXPECT_THAT(names, ElementsAre("alpha", "zeta"));
}

TEST_F(HwmonChipsTest, ATreeWithoutTheClassHasNoChips) {
    EXPECT_THAT(hwmonChips(tree.root()), IsEmpty());
    EXPECT_THAT(hwmonChips(tree.root() / "missing"), IsEmpty());
}

// Sleeping devices

TEST_F(HwmonChipsTest, TheStatesOfTheDeviceAndOfTheOneBehindItAreWatched) {
    write("name", "nvme\n");
    const fs::path own = write("device/power/runtime_status", "active\n");
    EXPECT_THAT(onlyChip().powerStates, ElementsAre(own));
    const fs::path behind = write("device/device/power/runtime_status", "suspended\n");
    EXPECT_THAT(onlyChip().powerStates, ElementsAre(own, behind));
    tree.remove(folder / "device/power");
    EXPECT_THAT(onlyChip().powerStates, ElementsAre(behind));
}

TEST_F(HwmonChipsTest, ADeviceThatCannotSleepIsNotWatched) {
    write("device/power/runtime_status", "unsupported\n");
    EXPECT_THAT(onlyChip().powerStates, IsEmpty());
    write("device/power/runtime_status", "");
    EXPECT_THAT(onlyChip().powerStates, IsEmpty());
    write("power/runtime_status", "suspended\n");
    EXPECT_THAT(onlyChip().powerStates, IsEmpty()) << "the class entry is no device";
}

TEST_F(HwmonChipsTest, TheStableNameOfADeviceIsWithoutCounters) {
    tree.makeDirectory("sys/devices/virtual/thermal/thermal_zone1/hwmon0");
    std::filesystem::create_directories(tree.root() / "sys/class/hwmon");
    std::filesystem::create_symlink("../../devices/virtual/thermal/thermal_zone1/hwmon0",
                                    tree.root() / "sys/class/hwmon/hwmon0");
    for (const auto& [name, stable] : {std::pair{"iwlwifi_1", "iwlwifi"},
                                       {"mt7921_phy0", "mt7921"},
                                       {"nct6798", "nct6798"},
                                       {"pch_cannonlake", "pch_cannonlake"},
                                       {"macsmc_hwmon", "macsmc_hwmon"},
                                       {"odd_", "odd_"}}) {
        SCOPED_TRACE(name);
        write("name", std::string(name) + "\n");
        EXPECT_EQ(onlyChip().name, name);
        EXPECT_EQ(onlyChip().stableName, stable);
    }
}

} // namespace
} // namespace kelvinbar::hwmon_chips_test
