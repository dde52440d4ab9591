#include "machines/linux/LinuxMachine.h"

#include "machines/linux/BootTimeClock.h"
#include "smc/SMCBridge.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tools/SnapshotTaker.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LinuxMachineTest : public testing::Test {
  protected:
    ~LinuxMachineTest() override { useMachine({}); }

    Machine machine() {
        return makeLinuxMachine(tree.root(), std::make_shared<BootTimeClock>(),
                                [this](const std::string& message) { messages.push_back(message); });
    }

    static fs::path chipFolder(int number) {
        return fs::path("sys/class/hwmon") / std::string("hwmon").append(std::to_string(number));
    }

    void addChip(int number, std::string_view name, std::string_view device) {
        tree.write(chipFolder(number) / "name", std::string(name).append("\n"));
        tree.write(chipFolder(number) / "device/uevent", std::string("DEVICE=").append(device).append("\n"));
    }

    void addTemperature(int chip, int number, std::string_view label, std::string_view value) {
        const std::string stem = std::string("temp").append(std::to_string(number));
        tree.write(chipFolder(chip) / (stem + "_label"), std::string(label).append("\n"));
        tree.write(chipFolder(chip) / (stem + "_input"), std::string(value).append("\n"));
    }

    /// Five chips, two of them of one kind.
    void fillTree() {
        addChip(0, "coretemp", "coretemp.0");
        addTemperature(0, 1, "Package id 0", "45000");
        addTemperature(0, 2, "Core 0", "44000");
        addChip(1, "nvme", "0000:01:00.0");
        addTemperature(1, 1, "Composite", "38850");
        addChip(2, "nvme", "0000:02:00.0");
        addTemperature(2, 1, "Composite", "51850");
        addChip(3, "nct6798", "nct6775.656");
        tree.write(chipFolder(3) / "fan1_input", "1200\n");
        tree.write(chipFolder(3) / "fan1_label", "CPU Fan\n");
        tree.write(chipFolder(3) / "in8_input", "3104\n");
        addChip(4, "thinkpad", "thinkpad_hwmon");
        tree.write(chipFolder(4) / "fan1_input", "2500\n");
    }

    /// The snapshot's lines without that of the time.
    static std::vector<std::string> snapshotLines(const Machine& machine) {
        std::istringstream stream(takeSnapshot(machine));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) {
            if (!line.starts_with("Generated:")) lines.push_back(line);
        }
        return lines;
    }

    static std::vector<std::string> keysIn(const std::vector<SMCKeyResult>& results) {
        std::vector<std::string> keys;
        keys.reserve(results.size());
        for (const SMCKeyResult& result : results) keys.push_back(result.textOr("key", ""));
        return keys;
    }

    static bool isControllerAvailable() {
        const auto status = SMCBridge::status();
        const bool* const available = status.find<bool>("available");
        return available != nullptr && *available;
    }

    fakes::TemporaryTree tree;
    std::vector<std::string> messages;
};

// Whether there is a controller

TEST_F(LinuxMachineTest, AnEmptyTreeHasNoControllerAndStillItsSystemsReadings) {
    const Machine empty = machine();
    useMachine(empty);
    EXPECT_FALSE(isControllerAvailable());
    EXPECT_THAT(SMCBridge::discoverKeys(), IsEmpty());
    EXPECT_THAT(SMCBridge::readSMCSuperIOFans(), IsEmpty());
    tree.write("proc/meminfo", "MemTotal:       16777216 kB\n");
    EXPECT_THAT(snapshotLines(empty), testing::Contains(HasSubstr("NRAM\tnative")));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(LinuxMachineTest, ChipsWithoutChannelsMakeNoController) {
    addChip(0, "acpitz", "thermal");
    useMachine(machine());
    EXPECT_FALSE(isControllerAvailable());
}

TEST_F(LinuxMachineTest, OneTemperatureIsEnoughForAController) {
    addChip(0, "coretemp", "coretemp.0");
    addTemperature(0, 1, "Package id 0", "45000");
    useMachine(machine());
    EXPECT_TRUE(isControllerAvailable());
    EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("TC0T"));
}

TEST_F(LinuxMachineTest, FansOfTheRegistryAloneAreEnoughForAController) {
    addChip(0, "nct6798", "nct6775.656");
    tree.write(chipFolder(0) / "fan1_input", "1200\n");
    useMachine(machine());
    EXPECT_TRUE(isControllerAvailable());
    EXPECT_THAT(keysIn(SMCBridge::readSMCSuperIOFans()), ElementsAre("FAN0"));
}

TEST_F(LinuxMachineTest, AControllerIsFoundOnceADeviceAppears) {
    useMachine(machine());
    EXPECT_FALSE(isControllerAvailable());
    fillTree();
    EXPECT_TRUE(isControllerAvailable());
}

// Readings

TEST_F(LinuxMachineTest, AFilledTreeGivesItsReadings) {
    fillTree();
    const auto lines = snapshotLines(machine());
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("TC0T\tflt "), HasSubstr("\t45 °C"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("TC0C\tflt "), HasSubstr("\t44 °C"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("TN0P\tflt "), HasSubstr("38.85 °C"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("TN1P\tflt "), HasSubstr("51.85 °C"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("CPU Fan"), HasSubstr("1200 RPM"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("F0Ac\tui16"), HasSubstr("2500 RPM"))));
    EXPECT_THAT(lines, testing::Contains(AllOf(HasSubstr("VBAT\tflt "), HasSubstr("3.104 V"))));
}

TEST_F(LinuxMachineTest, TheReadingsStayWhenTheKernelNumbersItsChipsAnew) {
    fillTree();
    const auto before = snapshotLines(machine());
    for (const auto& [from, to] : {std::pair{0, 14}, {1, 13}, {2, 11}, {3, 12}, {4, 10}}) {
        fs::rename(tree.root() / chipFolder(from), tree.root() / chipFolder(to));
    }
    EXPECT_EQ(snapshotLines(machine()), before);
    EXPECT_GE(before.size(), 7U);
}

TEST_F(LinuxMachineTest, FilesThatVanishAfterDiscoveryLoseOnlyTheirOwnReadings) {
    fillTree();
    useMachine(machine());
    const auto keys = SMCBridge::discoverKeys();
    const auto before = keysIn(SMCBridge::readCandidateKeys(keys));
    ASSERT_EQ(std::ranges::count(before, "TN0P"), 1);
    ASSERT_EQ(std::ranges::count(before, "TC0C"), 1);
    tree.write(chipFolder(1) / "temp1_input", "");
    tree.write(chipFolder(0) / "temp2_input", "");
    auto expected = before;
    std::erase(expected, "TN0P");
    std::erase(expected, "TC0C");
    EXPECT_EQ(keysIn(SMCBridge::readCandidateKeys(keys)), expected);
}

TEST_F(LinuxMachineTest, WholeDevicesThatVanishAreGoneAtTheNextDiscovery) {
    fillTree();
    useMachine(machine());
    const auto before = SMCBridge::discoverKeys();
    tree.remove(chipFolder(1));
    tree.remove(chipFolder(3));
    auto expected = before;
    std::erase(expected, "TN0P");
    std::erase(expected, "VBAT");
    ASSERT_EQ(before.size(), expected.size() + 2);
    EXPECT_EQ(SMCBridge::discoverKeys(), expected);
    EXPECT_EQ(keysIn(SMCBridge::readAllKeys()), expected);
    EXPECT_THAT(SMCBridge::readSMCSuperIOFans(), IsEmpty());
}

// What is left out

TEST_F(LinuxMachineTest, ChannelsWithoutAKeyAreCountedAndSpokenOfOnce) {
    addChip(0, "amdgpu", "0000:03:00.0");
    addTemperature(0, 1, "edge", "50000");
    tree.write(chipFolder(0) / "freq1_input", "500000000\n");
    tree.write(chipFolder(0) / "freq1_label", "sclk\n");
    useMachine(machine());
    for (int pass = 0; pass < 3; ++pass) EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("TG0D"));
    EXPECT_THAT(messages,
                ElementsAre(AllOf(HasSubstr("1 channel "), HasSubstr("sclk"), HasSubstr("amdgpu"))));
}

TEST_F(LinuxMachineTest, SeveralChannelsWithoutAKeyAreCountedInOneMessage) {
    addChip(0, "amdgpu", "0000:03:00.0");
    for (const std::string_view file : {"freq1_input", "freq2_input", "humidity1_input"}) {
        tree.write(chipFolder(0) / file, "1\n");
    }
    useMachine(machine());
    static_cast<void>(SMCBridge::discoverKeys());
    EXPECT_THAT(messages, ElementsAre(HasSubstr("3 channels")));
}

TEST_F(LinuxMachineTest, EnergyCountersThatCannotBeReadAreLeftOutAndSpokenOfOnce) {
    addChip(0, "coretemp", "coretemp.0");
    addTemperature(0, 1, "Package id 0", "45000");
    for (const std::string_view zone : {"intel-rapl:0", "intel-rapl:0:0"}) {
        const fs::path folder = fs::path("sys/class/powercap") / zone;
        tree.write(folder / "name", zone == "intel-rapl:0" ? "package-0\n" : "core\n");
        tree.makeDirectory(folder / "energy_uj");
    }
    useMachine(machine());
    for (int pass = 0; pass < 3; ++pass) EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("TC0T"));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("energy counters")));
}

TEST_F(LinuxMachineTest, EnergyCountersThatCanBeReadAreKeysAndNotSpokenOf) {
    tree.write("sys/class/powercap/intel-rapl:0/name", "package-0\n");
    tree.write("sys/class/powercap/intel-rapl:0/energy_uj", "1000000\n");
    tree.write("sys/class/powercap/intel-rapl:0/max_energy_range_uj", "262143328850\n");
    useMachine(machine());
    EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("PCPR"));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(LinuxMachineTest, ASupplyIsNotShownOnceMoreByTheMonitorThatRepeatsIt) {
    tree.write("sys/class/power_supply/BAT0/type", "Battery\n");
    tree.write("sys/class/power_supply/BAT0/voltage_now", "12000000\n");
    addChip(0, "BAT0", "BAT0");
    tree.write(chipFolder(0) / "in0_input", "12000\n");
    useMachine(machine());
    EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("B0AV"));
    addChip(1, "BAT0", "BAT0");
    tree.write(chipFolder(0) / "curr1_input", "500\n");
    EXPECT_THAT(SMCBridge::discoverKeys(), ElementsAre("B0AV", "B0Am"))
        << "what only the monitor tells stays";
}

} // namespace

} // namespace kelvinbar
