#include "machines/linux/LinuxMachine.h"

#include "base/Text.h"
#include "store/LoadPass.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/machines/linux/SystemCalls.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::linux_machine_test {

namespace {

namespace fs = std::filesystem;
using fakes::SystemCalls;
using fakes::systemCallsOf;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::chrono_literals;

/// Five chips, two of the same kind.
constexpr std::string_view computer = "chip devices/platform/coretemp.0/hwmon/hwmon0\n"
                                      "name coretemp\n"
                                      "temp1_label Package id 0\n"
                                      "temp1_input 45000\n"
                                      "temp2_label Core 0\n"
                                      "temp2_input 44000\n"
                                      "chip devices/pci0000:00/0000:01:00.0/hwmon/hwmon1\n"
                                      "name nvme\n"
                                      "temp1_label Composite\n"
                                      "temp1_input 38850\n"
                                      "chip devices/pci0000:00/0000:02:00.0/hwmon/hwmon2\n"
                                      "name nvme\n"
                                      "temp1_label Composite\n"
                                      "temp1_input 51850\n"
                                      "chip devices/platform/nct6775.656/hwmon/hwmon3\n"
                                      "name nct6798\n"
                                      "fan1_label CPU Fan\n"
                                      "fan1_input 1200\n"
                                      "in8_input 3104\n"
                                      "chip devices/platform/thinkpad_hwmon/hwmon/hwmon4\n"
                                      "name thinkpad\n"
                                      "fan1_input 2500\n";

/// The applesmc driver with one key that can be selected, and the channels that it shows to everyone.
constexpr std::string_view controller = "chip devices/platform/applesmc.768\n"
                                        "name applesmc\n"
                                        "temp1_label TC0P\n"
                                        "temp1_input 40500\n"
                                        "fan1_input 2156\n"
                                        "key_count 2\n"
                                        "key_at_index 0\n"
                                        "key_at_index_name TC0P\n"
                                        "key_at_index_type sp78\n"
                                        "key_at_index_data_length 2\n"
                                        "key_at_index_data (\x80\n";

class LinuxMachineTest : public testing::Test {
  protected:
    void add(std::string_view lines) { recorded.add(std::string(lines)); }

    void write(const fs::path& file, std::string_view content) { recorded.tree().write(file, content); }

    [[nodiscard]] Machine makeMachine() { return makeLinuxMachine(recorded.root(), clock, log.log); }

    /// The lines of the snapshot that are readings.
    static std::vector<std::string> snapshotLines(const Machine& machine) {
        std::istringstream stream(exportedText(machine));
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) {
            if (contains(line, "\t")) lines.push_back(line);
        }
        return lines;
    }

    static std::vector<std::string> keysIn(const std::vector<RawReading>& readings) {
        std::vector<std::string> keys;
        for (const RawReading& reading : readings) keys.push_back(reading.key);
        return keys;
    }

    fakes::RecordedTree recorded;
    fakes::RecordingLog log;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
};

// Availability

TEST_F(LinuxMachineTest, AnEmptyTreeHasNoSensorsAndStillItsSystemsReadings) {
    const Machine machine = makeMachine();
    EXPECT_FALSE(machine.source->status().isAvailable);
    EXPECT_THAT(machine.source->discoverKeys({}), IsEmpty());
    EXPECT_THAT(machine.source->readSMCSuperIOFans(), IsEmpty());
    write("proc/meminfo", "MemTotal:       16777216 kB\n");
    EXPECT_THAT(snapshotLines(machine), Contains(HasSubstr("NRAM\tnative")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxMachineTest, SpeaksOfSensorsWhereAMacSpeaksOfItsController) {
    const auto none = std::make_shared<const KeySet>();
    const LoadPass pass{.fixedCandidates = none, .shouldDiscover = true, .cachedDynamicKeys = none};
    EXPECT_EQ(loadReadings(makeMachine(), pass).statusMessage, "No sensors; showing what the system knows");
    add(computer);
    EXPECT_THAT(loadReadings(makeMachine(), pass).statusMessage,
                AllOf(StartsWith("Loaded "), testing::EndsWith(" sensors")));
    EXPECT_EQ(makeMachine().texts.reading, "Reading sensors…");
    EXPECT_EQ(makeMachine().texts.scanning, "Scanning sensors…");
    EXPECT_EQ(makeMachine().texts.memoryCard, "Memory sensors");
}

TEST_F(LinuxMachineTest, SpeaksOfTrayAndSessionWhereAMacSpeaksOfMenuBarAndLogin) {
    const MachineTexts texts = makeMachine().texts;
    EXPECT_EQ(texts.pinToolTip, "Double-click to add this key to the tray");
    EXPECT_EQ(texts.unpinToolTip, "Double-click to remove this key from the tray");
    EXPECT_EQ(texts.pinned, "Showing this key in the tray");
    EXPECT_EQ(texts.pin, "Show in tray");
    EXPECT_EQ(texts.unpin, "Remove from tray");
    EXPECT_EQ(texts.loginItem, "Enable or disable starting Kelvinbar with the session.");
    EXPECT_EQ(texts.about, "Tray sensor reader for Linux PCs and for Macs that run Linux.");
}

TEST_F(LinuxMachineTest, TellsThatItsDevicesComeAndGo) { EXPECT_TRUE(makeMachine().devicesComeAndGo); }

TEST_F(LinuxMachineTest, OneTemperatureIsEnoughToBeRead) {
    add("chip devices/pci0000:00/0000:01:00.0/hwmon/hwmon1\nname nvme\ntemp1_input 38850\n");
    const Machine machine = makeMachine();
    EXPECT_TRUE(machine.source->status().isAvailable);
    EXPECT_THAT(machine.source->discoverKeys({}), ElementsAre("nvme-pci-0100/temp1"));
}

TEST_F(LinuxMachineTest, ADeviceThatAppearsMakesTheMachineReadable) {
    const Machine machine = makeMachine();
    EXPECT_FALSE(machine.source->status().isAvailable);
    add(computer);
    clock->advance(std::chrono::seconds(16));
    EXPECT_TRUE(machine.source->status().isAvailable);
}

// Readings

TEST_F(LinuxMachineTest, AFilledTreeGivesItsReadings) {
    add(computer);
    const auto lines = snapshotLines(makeMachine());
    for (const std::string_view line :
         {"coretemp-isa-0000/temp1\tcoretemp\tCPU Package\t45 °C\tRAW=45000",
          "coretemp-isa-0000/temp2\tcoretemp\tCore 0\t44 °C\tRAW=44000",
          "nct6798-isa-0290/fan1\tnct6798\tMainboard CPU Fan\t1200 RPM\tRAW=1200"}) {
        EXPECT_THAT(lines, Contains(line));
    }
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("nvme-pci-0100/temp1\tnvme\t"), HasSubstr("\t38.85 °C\t"))));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("nvme-pci-0200/temp1\tnvme\t"), HasSubstr("\t51.85 °C\t"))));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("nct6798-isa-0290/in8\t"), HasSubstr("\t3.104 V\t"))));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("thinkpad-isa-0000/fan1\t"), HasSubstr("\t2500 RPM\t"))));
    EXPECT_EQ(lines.size(), 7U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxMachineTest, TheReadingsStayWhenTheKernelNumbersItsChipsAnew) {
    add(computer);
    const auto before = snapshotLines(makeMachine());
    const fs::path chips = recorded.root() / "sys/class/hwmon";
    for (const auto& [from, to] : {std::pair{"hwmon0", "hwmon14"},
                                   {"hwmon1", "hwmon13"},
                                   {"hwmon2", "hwmon11"},
                                   {"hwmon3", "hwmon12"},
                                   {"hwmon4", "hwmon10"}}) {
        fs::rename(chips / from, chips / to);
    }
    EXPECT_EQ(snapshotLines(makeMachine()), before);
    EXPECT_EQ(before.size(), 7U);
}

TEST_F(LinuxMachineTest, FilesThatVanishAfterDiscoveryLoseOnlyTheirOwnReadings) {
    add(computer);
    const Machine machine = makeMachine();
    const auto keys = machine.source->discoverKeys({});
    const auto before = keysIn(machine.source->readCandidateKeys(keys));
    EXPECT_EQ(before, keys);
    write("sys/class/hwmon/hwmon1/temp1_input", "");
    write("sys/class/hwmon/hwmon0/temp2_input", "");
    auto expected = before;
    EXPECT_EQ(std::erase(expected, "nvme-pci-0100/temp1"), 1U);
    EXPECT_EQ(std::erase(expected, "coretemp-isa-0000/temp2"), 1U);
    EXPECT_EQ(keysIn(machine.source->readCandidateKeys(keys)), expected);
}

TEST_F(LinuxMachineTest, AChannelOfAKindThatHasNoOtherReadingIsListed) {
    add("chip devices/pci0000:00/0000:03:00.0/hwmon/hwmon0\nname amdgpu\nfreq1_label sclk\n"
        "freq1_input 500000000\n");
    add("chip devices/i2c-1/1-0040/hwmon1\nname sht3x\nhumidity1_input 45200\n");
    const auto lines = snapshotLines(makeMachine());
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("amdgpu-pci-0300/freq1\t"), HasSubstr("\t500 MHz\t"))));
    EXPECT_THAT(lines, Contains(AllOf(HasSubstr("/humidity1\t"), HasSubstr("\t45.20 %\t"))));
}

TEST_F(LinuxMachineTest, IllFormedTextNeverReachesASnapshot) {
    add(replacedAll(computer, "Core 0", "K\xE4rn 0"));
    add("dir sys/devices/pci0000:00/0000:01:00.0\nmodel Gr\xF6\xDF"
        "e\n");
    write("sys/class/dmi/id/product_name", "Ger\xE4t\n");
    write("proc/cpuinfo", "model name\t: Prozessor \xFF\n");
    const std::string text = exportedText(makeMachine());
    EXPECT_TRUE(isValidUtf8(text)) << text;
    EXPECT_TRUE(contains(text, "coretemp-isa-0000/temp2\t"));
    recorded.tree().remove("sys/class/hwmon");
    const std::string native = exportedText(makeMachine());
    EXPECT_TRUE(isValidUtf8(native)) << native;
    EXPECT_TRUE(contains(native, "NLPM\tnative"));
}

// Cost

TEST_F(LinuxMachineTest, APassIsOneReadASensorAndNoOtherSystemCallOnFiles) {
    add(computer);
    const Machine machine = makeMachine();
    machine.source->status();
    const auto keys = machine.source->discoverKeys({});
    for (int pass = 0; pass < 3; ++pass) {
        clock->advance(3s);
        EXPECT_EQ(systemCallsOf([&] {
                      EXPECT_TRUE(machine.source->status().isAvailable);
                      EXPECT_EQ(machine.source->readCandidateKeys(keys).size(), 7U);
                      EXPECT_THAT(machine.source->readSMCSuperIOFans(), IsEmpty());
                  }),
                  (SystemCalls{.reads = 7}));
    }
}

/// More than a controller has, of which a pass reads 1,024.
TEST_F(LinuxMachineTest, APassReadsThousandsOfSensors) {
    constexpr int channels = 3000;
    std::string lines = "chip devices/pci0000:00/0000:09:00.0/hwmon/hwmon9\nname large\n";
    for (int number = 1; number <= channels; ++number) {
        lines.append("temp" + std::to_string(number) + "_input 45000\n");
    }
    add(lines);
    const Machine machine = makeMachine();
    machine.source->status();
    EXPECT_EQ(machine.source->readCandidateKeys(machine.source->discoverKeys({})).size(), channels);
}

TEST_F(LinuxMachineTest, AComputerSearchesForAppleControllersOnceAMinute) {
    add(computer);
    const Machine machine = makeMachine();
    machine.source->status();
    machine.source->discoverKeys({});
    clock->advance(59s);
    EXPECT_EQ(systemCallsOf([&] { machine.source->status(); }), SystemCalls{});
    clock->advance(1s);
    EXPECT_NE(systemCallsOf([&] { machine.source->status(); }), SystemCalls{});
    EXPECT_EQ(systemCallsOf([&] { machine.source->status(); }), SystemCalls{});
}

// Apple's controller

TEST_F(LinuxMachineTest, TheControllersKeysComeFirstAndTheKernelsSensorsFollow) {
    add(controller);
    add(computer);
    const Machine machine = makeMachine();
    EXPECT_EQ(machine.source->status(), (SourceStatus{.isAvailable = true, .message = "AppleSMC connected"}));
    EXPECT_THAT(machine.source->discoverKeys({}),
                ElementsAre("TC0P", "coretemp-isa-0000/temp1", "coretemp-isa-0000/temp2",
                            "nct6798-isa-0290/fan1", "nct6798-isa-0290/in8", "nvme-pci-0100/temp1",
                            "nvme-pci-0200/temp1", "thinkpad-isa-0000/fan1"))
        << "and the channels of the controller's chip are left out";
}

TEST_F(LinuxMachineTest, AKeyIsReadFromTheControllerAndTheRestFromTheKernel) {
    add(controller);
    add(computer);
    const auto lines = snapshotLines(makeMachine());
    EXPECT_THAT(lines, Contains("TC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"));
    EXPECT_THAT(lines, Contains(StartsWith("coretemp-isa-0000/temp1\t")));
    EXPECT_EQ(lines.size(), 8U);
}

TEST_F(LinuxMachineTest, AUserWhoMayNotChooseKeysIsToldSoAndHasTheControllersChannels) {
    add(controller);
    add(computer);
    const fs::path file = "sys/devices/platform/applesmc.768/key_at_index";
    recorded.tree().remove(file);
    recorded.tree().makeDirectory(file); // cannot be written, not even by root
    const Machine machine = makeMachine();
    for (int pass = 0; pass < 2; ++pass) {
        const auto lines = snapshotLines(machine);
        EXPECT_THAT(lines, Contains("TC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"));
        EXPECT_THAT(lines, Contains("F0Ac\tfpe2\tFan 0\t2156 RPM\tRAW=21B0"));
        EXPECT_EQ(lines.size(), 9U);
        clock->advance(5min);
    }
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("key_at_index")));
}

TEST_F(LinuxMachineTest, WhenTheControllerGoesItsKeysGoAndTheSensorsRemain) {
    add(controller);
    add(computer);
    const Machine machine = makeMachine();
    machine.source->status();
    EXPECT_EQ(machine.source->discoverKeys({}).size(), 8U);
    write("sys/devices/platform/applesmc.768/key_count", ""); // as a file that is open and gone
    recorded.tree().remove("sys/class/hwmon/applesmc.768");
    recorded.tree().remove("sys/devices/platform/applesmc.768");
    EXPECT_EQ(machine.source->discoverKeys({}).size(), 7U);
    EXPECT_TRUE(machine.source->status().isAvailable);
    add(controller);
    clock->advance(60s);
    EXPECT_TRUE(machine.source->status().isAvailable);
    EXPECT_EQ(machine.source->discoverKeys({}).size(), 8U);
}

} // namespace
} // namespace kelvinbar::linux_machine_test
