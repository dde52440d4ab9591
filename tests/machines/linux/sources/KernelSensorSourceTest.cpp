#include "machines/linux/sources/KernelSensorSource.h"

#include "base/Text.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RawReadingText.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/machines/linux/SystemCalls.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::kernel_sensor_source_test {

namespace {

namespace fs = std::filesystem;
using fakes::SystemCalls;
using fakes::systemCallsOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

using Keys = std::vector<std::string>;

/// Trees of chips, in the format of recorded machines.
constexpr std::string_view processor = "chip devices/pci0000:00/0000:00:18.3/hwmon/hwmon0\n"
                                       "name k10temp\n"
                                       "temp1_label Tctl\n"
                                       "temp1_input 45875\n";
constexpr std::string_view drive = "chip devices/pci0000:00/0000:01:00.0/nvme/nvme0/hwmon1\n"
                                   "name nvme\n"
                                   "temp1_label Composite\n"
                                   "temp1_input 38850\n"
                                   "dir sys/devices/pci0000:00/0000:01:00.0/nvme/nvme0\n"
                                   "model Fast Drive 980\n";
constexpr std::string_view card = "chip devices/pci0000:00/0000:03:00.0/hwmon/hwmon2\n"
                                  "name amdgpu\n"
                                  "temp1_label edge\n"
                                  "temp1_input 50000\n"
                                  "temp1_enable 0\n"
                                  "power1_label PPT\n"
                                  "power1_input 12500000\n"
                                  "fan1_input 900\n"
                                  "dir sys/devices/pci0000:00/0000:03:00.0/power\n"
                                  "runtime_status active\n";
constexpr std::string_view counter = "dir sys/class/powercap/intel-rapl:0\n"
                                     "name package-0\n"
                                     "energy_uj 1000000\n"
                                     "max_energy_range_uj 262143328850\n";

constexpr const char* processorKey = "k10temp-pci-00c3/temp1";
constexpr const char* driveKey = "nvme-pci-0100/temp1";
constexpr const char* counterKey = "intel-rapl-0/energy";

class KernelSensorSourceTest : public testing::Test {
  protected:
    void add(std::string_view lines) { recorded.add(std::string(lines)); }

    void write(const fs::path& file, std::string_view content) {
        recorded.tree().write("sys" / file, std::string(content) + "\n");
    }

    Keys discovered(const KeySet& listedBefore = {}) { return source.discoverKeys(listedBefore); }

    std::vector<RawReading> read(const Keys& keys) { return source.readCandidateKeys(keys); }

    std::optional<RawReading> read(const char* key) {
        auto readings = read(Keys{key});
        return readings.empty() ? std::nullopt : std::optional(std::move(readings.front()));
    }

    std::optional<double> numberOf(const char* key) {
        const auto reading = read(key);
        return reading ? reading->numericValue : std::nullopt;
    }

    static Keys keysIn(const std::vector<RawReading>& readings) {
        Keys keys;
        for (const RawReading& reading : readings) keys.push_back(reading.key);
        return keys;
    }

    /// The files of the tree that this process has open.
    [[nodiscard]] std::size_t openFileCount() const {
        const std::string root = fs::canonical(recorded.root()).string() + "/";
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code error;
            if (fs::read_symlink(entry.path(), error).string().starts_with(root)) ++count;
        }
        return count;
    }

    /// Adds chips with one temperature each, `first` to `last`.
    void addSmallChips(int first, int last) {
        for (int number = first; number <= last; ++number) {
            const std::string chip = std::to_string(number);
            add("chip devices/platform/small." + chip + "/hwmon/hwmon" + chip +
                "\nname small\ntemp1_input 45000\n");
        }
    }

    /// The system calls of a search, at a time at which nothing is known.
    fakes::SystemCalls callsOfSearch() {
        source.close();
        return systemCallsOf([&] { discovered(); });
    }

    /// Adds a chip with that many temperatures.
    void addLargeChip(int channels) {
        std::string lines = "chip devices/pci0000:00/0000:09:00.0/hwmon/hwmon9\nname large\n";
        for (int number = 1; number <= channels; ++number) {
            lines.append("temp" + std::to_string(number) + "_input 45000\n");
        }
        add(lines);
    }

    fakes::RecordedTree recorded;
    fakes::RecordingLog log{"debug"};
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    KernelSensorSource source{recorded.root(), clock, log.log};
};

// Availability

TEST_F(KernelSensorSourceTest, IsAvailableOnceThereIsASensor) {
    EXPECT_EQ(source.status(), (SourceStatus{.isAvailable = false, .message = "No sensors"}));
    EXPECT_THAT(discovered(), IsEmpty());
    add("chip devices/virtual/thermal/thermal_zone0/hwmon5\nname acpitz\n");
    EXPECT_FALSE(source.status().isAvailable) << "a chip without a channel";
    add(processor);
    clock->advance(KernelSensorSource::searchInterval + std::chrono::milliseconds(1));
    EXPECT_EQ(source.status(), (SourceStatus{.isAvailable = true, .message = "Sensors of the kernel"}));
}

TEST_F(KernelSensorSourceTest, SearchesForSensorsEveryFifteenSecondsWhileThereAreNone) {
    EXPECT_FALSE(source.status().isAvailable);
    add(processor);
    clock->advance(KernelSensorSource::searchInterval);
    EXPECT_FALSE(source.status().isAvailable);
    clock->advance(std::chrono::milliseconds(1));
    EXPECT_TRUE(source.status().isAvailable);
}

TEST_F(KernelSensorSourceTest, SearchesAtOnceAfterItWasClosed) {
    EXPECT_FALSE(source.status().isAvailable);
    add(processor);
    source.close();
    EXPECT_TRUE(source.status().isAvailable);
}

TEST_F(KernelSensorSourceTest, HasNoFansOfARegistry) {
    add(card);
    discovered();
    EXPECT_THAT(source.readSMCSuperIOFans(), IsEmpty());
}

// Readings

TEST_F(KernelSensorSourceTest, AReadingCarriesItsOwnNameCategoryAndUnitAndTheFilesNumber) {
    add(processor);
    discovered();
    const RawReading expected{.key = processorKey,
                              .type = "k10temp",
                              .value = "45.88",
                              .numericValue = 45.875,
                              .raw = "45875",
                              .size = 0,
                              .status = "OK",
                              .name = "CPU Tctl",
                              .category = "CPU",
                              .unit = "°C"};
    EXPECT_EQ(read(processorKey), expected);
}

TEST_F(KernelSensorSourceTest, ListsItsKeysInAscendingOrder) {
    add(drive);
    add(card);
    add(processor);
    const Keys keys = discovered();
    EXPECT_THAT(keys, ElementsAre("amdgpu-pci-0300/fan1", "amdgpu-pci-0300/power1", "amdgpu-pci-0300/temp1",
                                  processorKey, driveKey));
}

TEST_F(KernelSensorSourceTest, ReadsTheKeysThatItIsAskedForInTheirOrderAndEachOnce) {
    add(processor);
    add(drive);
    discovered();
    EXPECT_THAT(keysIn(read(Keys{driveKey, "TC0P", processorKey, "", "nvme-pci-0100/temp9", driveKey})),
                ElementsAre(driveKey, processorKey));
    EXPECT_THAT(keysIn(read(Keys{driveKey, driveKey, processorKey, processorKey})),
                ElementsAre(driveKey, processorKey));
    EXPECT_THAT(read(Keys{}), IsEmpty());
}

TEST_F(KernelSensorSourceTest, LeavesOutWhatCannotBeRead) {
    add(processor);
    add(drive);
    const Keys keys = discovered();
    for (const std::string_view content : {"", "text", "-128000", "999000"}) {
        SCOPED_TRACE(content);
        write("class/hwmon/hwmon1/temp1_input", content);
        EXPECT_THAT(keysIn(read(keys)), ElementsAre(processorKey));
    }
    write("class/hwmon/hwmon1/temp1_input", "38850");
    EXPECT_THAT(keysIn(read(keys)), ElementsAre(processorKey, driveKey));
}

TEST_F(KernelSensorSourceTest, LeavesOutAFaultyChannelForAsLongAsItIsFaulty) {
    add(processor);
    add("chip devices/platform/nct6775.656/hwmon/hwmon3\nname nct6798\ntemp1_input 30000\ntemp1_fault 1\n");
    const Keys keys = discovered();
    EXPECT_EQ(keys.size(), 2U);
    EXPECT_THAT(keysIn(read(keys)), ElementsAre(processorKey));
    write("class/hwmon/hwmon3/temp1_fault", "0");
    EXPECT_EQ(read(keys).size(), 2U);
}

TEST_F(KernelSensorSourceTest, ReadsNothingBeforeADiscoveryAndNothingAfterItWasClosed) {
    add(processor);
    EXPECT_EQ(read(processorKey), std::nullopt);
    discovered();
    EXPECT_NE(read(processorKey), std::nullopt);
    EXPECT_EQ(openFileCount(), 1U);
    source.close();
    EXPECT_EQ(openFileCount(), 0U);
    EXPECT_EQ(read(processorKey), std::nullopt);
    EXPECT_TRUE(source.status().isAvailable);
    EXPECT_NE(read(processorKey), std::nullopt);
}

// Cost

TEST_F(KernelSensorSourceTest, APassIsOneReadASensorAndNoOtherSystemCallOnFiles) {
    addLargeChip(200);
    const Keys keys = discovered();
    ASSERT_EQ(keys.size(), 200U);
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(read(keys).size(), 200U); }), (SystemCalls{.reads = 200}));
    }
}

TEST_F(KernelSensorSourceTest, EachFurtherChipCostsASearchTheSame) {
    addSmallChips(1, 10);
    const auto ten = callsOfSearch().others;
    addSmallChips(11, 20);
    const auto twenty = callsOfSearch().others;
    addSmallChips(21, 40);
    EXPECT_EQ(callsOfSearch().others - twenty, 2 * (twenty - ten));
    EXPECT_LE(twenty - ten, 10 * 20);
}

TEST_F(KernelSensorSourceTest, TheStatusOfAnAvailableSourceIsKnownWithoutASystemCall) {
    add(processor);
    discovered();
    EXPECT_EQ(systemCallsOf([&] { EXPECT_TRUE(source.status().isAvailable); }), SystemCalls{});
}

TEST_F(KernelSensorSourceTest, TheFirstPassLooksForSensorsOnce) {
    add(processor);
    EXPECT_NE(systemCallsOf([&] { EXPECT_TRUE(source.status().isAvailable); }), SystemCalls{});
    EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(discovered(), Keys{processorKey}); }), SystemCalls{});
}

TEST_F(KernelSensorSourceTest, EveryOtherDiscoveryLooksForSensorsAgain) {
    add(processor);
    source.status();
    discovered();
    add(drive);
    EXPECT_THAT(discovered(), ElementsAre(processorKey, driveKey));
    source.close();
    source.status();
    recorded.tree().remove("sys/class/hwmon/hwmon1");
    clock->advance(1001ms);
    EXPECT_EQ(discovered(), Keys{processorKey}) << "what the status found is too old";
}

TEST_F(KernelSensorSourceTest, AFileStaysOpenOverDiscoveriesAndIsOpenOnce) {
    add(processor);
    add(card);
    discovered();
    const std::size_t open = openFileCount();
    EXPECT_EQ(open, 4U) << "three inputs, for one is switched off, and the state of the card";
    for (int pass = 0; pass < 3; ++pass) discovered();
    EXPECT_EQ(openFileCount(), open);
    recorded.tree().remove("sys/class/hwmon/hwmon2");
    discovered();
    EXPECT_EQ(openFileCount(), 1U);
}

TEST_F(KernelSensorSourceTest, NoMoreFilesStayOpenThanAProcessCanSpare) {
    addLargeChip(SensorFiles::mostOpenFiles + 100);
    const Keys keys = discovered();
    ASSERT_EQ(keys.size(), std::size_t{SensorFiles::mostOpenFiles + 100});
    EXPECT_EQ(openFileCount(), std::size_t{SensorFiles::mostOpenFiles});
    EXPECT_EQ(read(keys).size(), keys.size());
    discovered();
    EXPECT_EQ(openFileCount(), std::size_t{SensorFiles::mostOpenFiles});
    EXPECT_EQ(read(keys).size(), keys.size());
}

// Sleeping devices

class SleepingCard : public KernelSensorSourceTest {
  protected:
    SleepingCard() {
        add(card);
        write("devices/pci0000:00/0000:03:00.0/power/runtime_status", "suspended");
    }

    void wake() {
        write("devices/pci0000:00/0000:03:00.0/power/runtime_status", "active");
        clock->advance(DevicePower::validity + 1ms);
    }
};

TEST_F(SleepingCard, KeepsItsReadingsAsAText) {
    const Keys keys = discovered();
    const auto readings = read(keys);
    ASSERT_EQ(readings.size(), 3U);
    EXPECT_THAT(readings, Each(Field(&RawReading::value, "asleep")));
    EXPECT_THAT(readings, Each(Field(&RawReading::numericValue, std::nullopt)));
    EXPECT_THAT(readings, Each(Field(&RawReading::unit, "")));
    EXPECT_THAT(readings, Each(Field(&RawReading::raw, "suspended")));
    EXPECT_THAT(readings, Each(Field(&RawReading::type, "amdgpu")));
    EXPECT_EQ(readings[0].name, "GPU Fan");
    EXPECT_EQ(readings[0].category, "Fans");
}

TEST_F(SleepingCard, IsNotReadAndAskedForItsStateOnceAPass) {
    const Keys keys = discovered();
    clock->advance(DevicePower::validity + 1ms);
    EXPECT_EQ(systemCallsOf([&] { EXPECT_EQ(read(keys).size(), 3U); }), (SystemCalls{.reads = 1}));
}

/// The enable file of a channel is not read, because that would wake the card. Here it contains 0.
TEST_F(SleepingCard, IsNotWokenByADiscovery) {
    EXPECT_EQ(discovered().size(), 3U);
    EXPECT_NE(read("amdgpu-pci-0300/temp1"), std::nullopt);
    wake();
    EXPECT_EQ(discovered().size(), 3U) << "the key stays";
    EXPECT_EQ(read("amdgpu-pci-0300/temp1"), std::nullopt) << "and cannot be read";
}

TEST_F(SleepingCard, HasNumbersAgainOnceItWakes) {
    const Keys keys = discovered();
    read(keys);
    wake();
    const auto fan = read("amdgpu-pci-0300/fan1");
    ASSERT_TRUE(fan);
    EXPECT_EQ(fan->numericValue, 900);
    EXPECT_EQ(fan->unit, "RPM");
    EXPECT_EQ(fan->raw, "900");
    clock->advance(DevicePower::validity + 1ms);
    EXPECT_EQ(systemCallsOf([&] { read(keys); }), (SystemCalls{.reads = 4})) << "its state and three inputs";
}

// Energy counters

class EnergyCounters : public KernelSensorSourceTest {
  protected:
    EnergyCounters() { add(counter); }

    void count(std::string_view microjoules) { write("class/powercap/intel-rapl:0/energy_uj", microjoules); }
};

TEST_F(EnergyCounters, ShowThePowerSinceTheLastReading) {
    EXPECT_EQ(discovered(), Keys{counterKey});
    clock->advance(2s);
    count("31000000");
    const auto power = read(counterKey);
    ASSERT_TRUE(power);
    EXPECT_EQ(power->numericValue, 15);
    EXPECT_EQ(power->value, "15");
    EXPECT_EQ(power->unit, "W");
    EXPECT_EQ(power->raw, "31000000");
    EXPECT_EQ(power->category, "Power");
    clock->advance(1s);
    count("41000000");
    EXPECT_EQ(numberOf(counterKey), 10);
}

TEST_F(EnergyCounters, AreMeteredOnOverAnotherDiscovery) {
    discovered();
    clock->advance(1s);
    count("6000000");
    discovered();
    clock->advance(1s);
    count("11000000");
    EXPECT_EQ(numberOf(counterKey), 5) << "the mean of both seconds";
}

TEST_F(EnergyCounters, BeginAnewAtTheirRangeAndAfterAReset) {
    count("262143328000");
    discovered();
    clock->advance(1s);
    count("4999150");
    EXPECT_NEAR(numberOf(counterKey).value_or(0), 5, 1e-6);
    clock->advance(1s);
    count("1000000000");
    ASSERT_NE(numberOf(counterKey), std::nullopt);
    clock->advance(1s);
    count("1000");
    EXPECT_EQ(read(counterKey), std::nullopt) << "after hibernation, which is no turn of the counter";
    clock->advance(1s);
    count("3001000");
    EXPECT_NEAR(numberOf(counterKey).value_or(0), 3, 1e-6);
}

TEST_F(EnergyCounters, ThatCannotBeReadAreLeftOutAndLoggedOnce) {
    add("dir sys/class/powercap/intel-rapl:0:0\nname core\n");
    for (const std::string_view zone : {"intel-rapl:0", "intel-rapl:0:0"}) {
        const fs::path file = fs::path("sys/class/powercap") / zone / "energy_uj";
        recorded.tree().remove(file);
        recorded.tree().makeDirectory(file); // cannot be read as a file
    }
    add(processor);
    for (int pass = 0; pass < 3; ++pass) EXPECT_EQ(discovered(), Keys{processorKey});
    EXPECT_THAT(log.lines(),
                testing::Contains(AllOf(HasSubstr("info"), HasSubstr("energy counters"))).Times(1));
}

TEST_F(EnergyCounters, MayBeReadWhileAnotherThreadLooksForSensors) {
    addLargeChip(50);
    const Keys keys = discovered();
    std::thread other([&] {
        for (int pass = 0; pass < 50; ++pass) EXPECT_EQ(source.discoverKeys({}), keys);
    });
    for (int pass = 0; pass < 200; ++pass) {
        clock->advance(1s);
        EXPECT_EQ(read(keys).size(), keys.size());
    }
    other.join();
    EXPECT_EQ(numberOf(counterKey), 0);
}

// Devices that come and go

TEST_F(KernelSensorSourceTest, ADeviceThatAppearsIsFoundAtTheNextDiscovery) {
    add(processor);
    EXPECT_EQ(discovered(), Keys{processorKey});
    add(drive);
    EXPECT_EQ(read(driveKey), std::nullopt);
    EXPECT_THAT(discovered(), ElementsAre(processorKey, driveKey));
    EXPECT_EQ(numberOf(driveKey), 38.85);
}

TEST_F(KernelSensorSourceTest, ADeviceThatHasGoneIsNoLongerListedAtTheNextDiscovery) {
    add(processor);
    add(drive);
    discovered();
    recorded.tree().remove("sys/class/hwmon/hwmon1");
    recorded.tree().remove("sys/devices/pci0000:00/0000:01:00.0");
    EXPECT_EQ(discovered(), Keys{processorKey});
    EXPECT_EQ(read(driveKey), std::nullopt);
    EXPECT_EQ(numberOf(processorKey), 45.875);
}

TEST_F(KernelSensorSourceTest, ADeviceThatReturnsUnderAnotherNumberHasItsKeyAndNameAgain) {
    add(processor);
    add(drive);
    discovered();
    const auto before = read(driveKey);
    ASSERT_TRUE(before);
    recorded.tree().remove("sys/class/hwmon/hwmon1");
    recorded.tree().remove("sys/devices/pci0000:00/0000:01:00.0");
    discovered();
    add(replacedAll(drive, "hwmon1", "hwmon17"));
    EXPECT_THAT(discovered(), ElementsAre(processorKey, driveKey));
    EXPECT_EQ(read(driveKey), before);
}

/// A device that returns has new files under the same paths.
TEST_F(KernelSensorSourceTest, ADeviceThatReturnsUnderItsNumberIsReadFromItsNewFiles) {
    add(drive);
    discovered();
    recorded.tree().remove("sys/class/hwmon/hwmon1");
    recorded.tree().remove("sys/devices/pci0000:00/0000:01:00.0");
    add(replacedAll(drive, "38850", "50000"));
    EXPECT_EQ(discovered(), Keys{driveKey});
    EXPECT_EQ(numberOf(driveKey), 50);
}

TEST_F(KernelSensorSourceTest, WhatASupplyAndItsChipBothShowIsListedOnce) {
    const std::string battery = "devices/LNXSYSTM:00/PNP0C0A:00/power_supply/BAT0";
    add("dir sys/" + battery + "\ntype Battery\nvoltage_now 12000000\ncharge_now 4000000\n");
    add("link sys/class/power_supply/BAT0 ../../" + battery + "\n");
    EXPECT_THAT(discovered(), ElementsAre("BAT0/charge_now", "BAT0/voltage_now"));
    add("chip " + battery + "/hwmon6\nname BAT0\nin0_input 12000\ncurr1_input 500\n");
    EXPECT_THAT(discovered(), ElementsAre("BAT0-acpi-0/curr1", "BAT0-acpi-0/in0", "BAT0/charge_now"));
}

// Invalid texts

TEST_F(KernelSensorSourceTest, IllFormedTextNeverReachesAReading) {
    add("chip devices/pci0000:00/0000:01:00.0/nvme/nvme0/hwmon1\n"
        "name nv\xFFme\n"
        "temp1_label K\xFChler\n"
        "temp1_input 38850\n"
        "temp2_label \xC3\n"
        "temp2_input 39850\n"
        "dir sys/devices/pci0000:00/0000:01:00.0/nvme/nvme0\n"
        "model Gr\xF6\xDF"
        "e 980\n");
    add("dir sys/class/power_supply/BAT\xE4\ntype Battery\nstatus Entl\xE4"
        "dt\nvoltage_now 12000000\n");
    const auto readings = read(discovered());
    EXPECT_GE(readings.size(), 3U);
    for (const RawReading& reading : readings) {
        for (const std::string& text : {reading.key, reading.type, reading.value, reading.raw,
                                        reading.name.value_or(""), reading.unit.value_or("")}) {
            EXPECT_TRUE(isValidUtf8(text)) << reading.key << ": " << text;
        }
        EXPECT_FALSE(reading.name.value_or("").empty()) << reading.key;
    }
}

// Apple's controller

/// The chip of the applesmc driver, which shows temperatures and fans to everyone.
constexpr std::string_view controllerChip = "chip devices/platform/applesmc.768\n"
                                            "name applesmc\n"
                                            "temp1_label TC0P\n"
                                            "temp1_input 40500\n"
                                            "temp2_label TW0P\n"
                                            "temp2_input 41000\n"
                                            "fan1_label Left side \n"
                                            "fan1_input 2156\n"
                                            "fan1_min 2000\n"
                                            "fan1_max 6000\n"
                                            "fan1_safe 0\n"
                                            "fan1_output 2160\n"
                                            "fan1_manual 0\n"
                                            "fan2_input 2157\n";
constexpr std::string_view wireless = "chip devices/virtual/thermal/thermal_zone1/hwmon8\n"
                                      "name iwlwifi_1\n"
                                      "temp1_input 41000\n";

TEST_F(KernelSensorSourceTest, WithoutAccessToKeysTheControllersChannelsKeepItsKeys) {
    add(controllerChip);
    add(processor);
    EXPECT_THAT(discovered(), ElementsAre("F0Ac", "F0ID", "F0Md", "F0Mn", "F0Mx", "F0Sf", "F0Tg", "F1Ac",
                                          "TC0P", "TW0P", processorKey));
}

TEST_F(KernelSensorSourceTest, WithoutAccessToKeysReadingsHaveTheControllersTypesAndBytes) {
    add(controllerChip);
    discovered();
    const RawReading temperature{.key = "TC0P",
                                 .type = "sp78",
                                 .value = "40.50",
                                 .numericValue = 40.5,
                                 .raw = "2880",
                                 .size = 2,
                                 .name = {},
                                 .category = {},
                                 .unit = {}};
    EXPECT_EQ(read("TC0P"), temperature);
    const RawReading fan{.key = "F0Ac",
                         .type = "fpe2",
                         .value = "2156",
                         .numericValue = 2156,
                         .raw = "21B0",
                         .size = 2,
                         .name = {},
                         .category = {},
                         .unit = {}};
    EXPECT_EQ(read("F0Ac"), fan);
    const auto mode = read("F0Md");
    ASSERT_TRUE(mode);
    EXPECT_EQ(mode->type, "ui8 ");
    EXPECT_EQ(mode->raw, "00");
}

TEST_F(KernelSensorSourceTest, WithoutAccessToKeysAFansLabelIsReadUnderItsOwnKey) {
    add(controllerChip);
    discovered();
    const auto name = read("F0ID");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->type, "ch8*");
    EXPECT_EQ(name->value, "Left side");
    EXPECT_EQ(name->size, 32U);
    EXPECT_EQ(name->numericValue, std::nullopt);
    EXPECT_EQ(read("F1ID"), std::nullopt) << "a fan without a label";
}

TEST_F(KernelSensorSourceTest, WhatTheControllersTypeCannotHoldIsLeftOut) {
    add(controllerChip);
    discovered();
    write("class/hwmon/applesmc.768/temp1_input", "150000");
    write("class/hwmon/applesmc.768/fan1_input", "20000");
    EXPECT_EQ(read("TC0P"), std::nullopt) << "an sp78 ends at 128";
    EXPECT_EQ(read("F0Ac"), std::nullopt) << "an fpe2 ends at 16384";
}

TEST_F(KernelSensorSourceTest, WhatTheControllersChannelsMeasureIsNotListedOnceMore) {
    add(wireless);
    EXPECT_EQ(discovered().size(), 1U);
    add(controllerChip);
    const Keys keys = discovered();
    EXPECT_EQ(std::ranges::count(keys, "TW0P"), 1);
    EXPECT_TRUE(std::ranges::none_of(keys, [](const auto& key) { return key.starts_with("iwlwifi"); }));
}

TEST_F(KernelSensorSourceTest, BesideAListOfKeysTheControllersChannelsAreLeftOut) {
    add(controllerChip);
    add(processor);
    EXPECT_EQ(discovered({"TC0P", "FNum"}), Keys{processorKey});
}

TEST_F(KernelSensorSourceTest, WhatTheListedKeysMeasureIsLeftOut) {
    add(wireless);
    add(processor);
    EXPECT_EQ(discovered({"TC0P"}).size(), 2U);
    EXPECT_EQ(discovered({"TC0P", "TW0P"}), Keys{processorKey});
    EXPECT_EQ(discovered({}).size(), 2U);
}

// A search that was made before the SMC's keys were known is repeated.
TEST_F(KernelSensorSourceTest, TheKeysOfTheStatusAreNotThoseBesideAController) {
    add(wireless);
    add(processor);
    EXPECT_TRUE(source.status().isAvailable);
    EXPECT_EQ(discovered({"TW0P"}), Keys{processorKey});
}

// The log

TEST_F(KernelSensorSourceTest, LogsHowManySensorsWereFound) {
    add(processor);
    add(drive);
    discovered();
    EXPECT_THAT(log.lines(), ElementsAre(AllOf(HasSubstr("debug"), HasSubstr("2 sensors found"))));
}

// What it tells of channels without a value

using Reasons = std::map<std::string, std::string>;

/// The reasons of a report by channel, as text.
Reasons reasonsIn(const SourceReport& report) {
    Reasons reasons;
    for (const LeftOutChannel& channel : report.leftOut) reasons[channel.channel] = textOf(channel.reason);
    return reasons;
}

TEST_F(KernelSensorSourceTest, ReportsEveryClassWithItsDevicesAndReadings) {
    add(processor);
    add(drive);
    add(counter);
    const auto reports = source.report();
    ASSERT_EQ(reports.size(), 3U);
    EXPECT_EQ(reports[0].name, "batteries and chargers");
    EXPECT_EQ(reports[0].devices, 0U);
    EXPECT_EQ(reports[1].name, "energy counters");
    EXPECT_EQ(reports[1].devices, 1U);
    EXPECT_EQ(reports[2].name, "hardware monitors");
    EXPECT_EQ(reports[2].devices, 2U);
    EXPECT_EQ(reports[2].readings, 2U);
    EXPECT_THAT(reports[2].leftOut, IsEmpty());
}

TEST_F(KernelSensorSourceTest, ReportsWhyChannelsHaveNoValue) {
    add("chip devices/platform/nct6775.656/hwmon/hwmon0\n"
        "name nct6798\n"
        "temp1_input 30000\n"
        "temp2_input -62000\n" // of an open input
        "temp3_input 31000\n"
        "temp3_fault 1\n"
        "temp4_input nonsense\n"
        "in0_input 1000\n"
        "in0_enable 0\n"
        "fan1_input 900\n"
        "fan1_min 300\n");
    add(card);
    write("devices/pci0000:00/0000:03:00.0/power/runtime_status", "suspended");
    const SourceReport report = source.report().back();
    EXPECT_EQ(report.readings, 2U);
    EXPECT_EQ(reasonsIn(report), (Reasons{{"nct6798-isa-0290/temp2", "not connected"},
                                          {"nct6798-isa-0290/temp3", "not connected"},
                                          {"nct6798-isa-0290/temp4", "unreadable"},
                                          {"nct6798-isa-0290/in0", "switched off in its driver"},
                                          {"nct6798-isa-0290/fan1_min", "a setting, not a measurement"},
                                          {"amdgpu-pci-0300/temp1", "asleep"},
                                          {"amdgpu-pci-0300/power1", "asleep"},
                                          {"amdgpu-pci-0300/fan1", "asleep"}}));
}

TEST_F(KernelSensorSourceTest, ReportsWhatAnotherReadingShows) {
    add("dir sys/class/power_supply/BAT0\n"
        "type Battery\n"
        "voltage_now 12000000\n"
        "charge_now 3000000\n"
        "chip devices/LNXSYSTM:00/power_supply/BAT0/hwmon1\n"
        "name BAT0\n"
        "in0_input 12000\n");
    const SourceReport report = source.report().front();
    EXPECT_EQ(reasonsIn(report), (Reasons{{"BAT0/voltage_now", "shown by another reading"}}));
    EXPECT_EQ(report.readings, 1U);
}

TEST_F(KernelSensorSourceTest, ReportsWhatAControllerMeasures) {
    add("chip devices/platform/coretemp.0/hwmon/hwmon0\n"
        "name coretemp\n"
        "temp2_label Core 0\n"
        "temp2_input 44000\n");
    discovered({"TC0C"});
    EXPECT_EQ(reasonsIn(source.report().back()),
              (Reasons{{"coretemp-isa-0000/temp2_input", "shown by another reading"}}));
}

TEST_F(KernelSensorSourceTest, ReportsSuppliesThatAreNotThereAndZonesWithoutAName) {
    add("dir sys/class/power_supply/BAT1\n"
        "type Battery\n"
        "present 0\n"
        "dir sys/class/powercap/intel-rapl:0\n"
        "energy_uj 1\n");
    const auto reports = source.report();
    EXPECT_EQ(reasonsIn(reports[0]), (Reasons{{"BAT1", "not connected"}}));
    EXPECT_EQ(reasonsIn(reports[1]), (Reasons{{"intel-rapl:0", "without a name"}}));
}

TEST_F(KernelSensorSourceTest, ReportsCountersThatThisUserMayNotRead) {
    add("dir sys/class/powercap/intel-rapl:0\n"
        "name package-0\n");
    recorded.tree().makeDirectory("sys/class/powercap/intel-rapl:0/energy_uj"); // refused to root, too
    const SourceReport report = source.report()[1];
    EXPECT_EQ(reasonsIn(report), (Reasons{{"intel-rapl-0/energy_uj", "readable by the administrator only"}}));
    EXPECT_EQ(report.devices, 1U);
    EXPECT_EQ(report.readings, 0U);
}

TEST_F(KernelSensorSourceTest, AReportChangesNoList) {
    add(processor);
    const Keys keys = discovered();
    add(drive);
    EXPECT_EQ(source.report().back().readings, 2U);
    EXPECT_THAT(read(Keys{driveKey}), IsEmpty());
    EXPECT_EQ(read(keys).size(), 1U);
}

} // namespace
} // namespace kelvinbar::kernel_sensor_source_test
