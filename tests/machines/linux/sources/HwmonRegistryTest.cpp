// The fans of a tree as the bridge reads them from the registry.

#include "machines/linux/sources/HwmonRegistry.h"

#include "machines/linux/LinuxMachine.h"
#include "smc/SMCBridge.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class HwmonRegistryTest : public testing::Test {
  protected:
    HwmonRegistryTest() { useMachine(machine); }

    ~HwmonRegistryTest() override { useMachine({}); }

    void addChip(int number, std::string_view name) {
        folder = fs::path("sys/class/hwmon") / std::string("hwmon").append(std::to_string(number));
        tree.write(folder / "name", std::string(name).append("\n"));
        tree.write(folder / "device/uevent",
                   std::string("DEVICE=").append(name).append(std::to_string(number)).append("\n"));
    }

    /// A fan of the chip that was added last.
    fs::path addFan(int number, std::string_view speed, std::string_view label = "") {
        const std::string stem = std::string("fan").append(std::to_string(number));
        if (!label.empty()) tree.write(folder / (stem + "_label"), std::string(label).append("\n"));
        return tree.write(folder / (stem + "_input"), std::string(speed).append("\n"));
    }

    /// Name and value of every fan in the registry, after a look for devices.
    static std::vector<std::pair<std::string, std::string>> fans() {
        static_cast<void>(SMCBridge::discoverKeys());
        return fansAtThisMoment();
    }

    static std::vector<std::pair<std::string, std::string>> fansAtThisMoment() {
        std::vector<std::pair<std::string, std::string>> fans;
        for (const SMCKeyResult& fan : SMCBridge::readSMCSuperIOFans()) {
            fans.emplace_back(fan.textOr("name", ""), fan.textOr("value", ""));
        }
        return fans;
    }

    /// How often each speed is shown, by key or in the registry.
    static std::map<std::string, int> shownSpeeds() {
        std::map<std::string, int> speeds;
        for (const SMCKeyResult& result : SMCBridge::readAllKeys()) {
            const std::string key = result.textOr("key", "");
            if (key.ends_with("Ac") || key.starts_with("Fan")) ++speeds[result.textOr("value", "")];
        }
        for (const SMCKeyResult& fan : SMCBridge::readSMCSuperIOFans()) ++speeds[fan.textOr("value", "")];
        return speeds;
    }

    fakes::TemporaryTree tree;
    fs::path folder;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    Machine machine = makeLinuxMachine(tree.root(), clock, [](const std::string&) {});
};

// Fans

TEST_F(HwmonRegistryTest, FansOfASuperIOChipAreShownUnderTheirLabels) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    addFan(2, "0", "Chassis Fan 1");
    EXPECT_THAT(fans(), ElementsAre(Pair("CPU Fan", "1200"), Pair("Chassis Fan 1", "0")));
    const auto results = SMCBridge::readSMCSuperIOFans();
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].textOr("key", ""), "FAN0");
    EXPECT_EQ(results[0].textOr("unit", ""), "RPM");
    EXPECT_EQ(results[0].textOr("type", ""), "ioreg");
    EXPECT_EQ(results[1].textOr("key", ""), "FAN1");
}

TEST_F(HwmonRegistryTest, FansWithoutLabelsAreShownUnderTheirNumbers) {
    addChip(0, "it8628");
    addFan(1, "1200");
    addFan(3, "900");
    EXPECT_THAT(fans(), ElementsAre(Pair("fan1", "1200"), Pair("fan3", "900")));
}

TEST_F(HwmonRegistryTest, FansOfSeveralChipsAreShown) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    addChip(1, "asus_wmi_sensors");
    addFan(1, "800", "Chassis Fan 1");
    EXPECT_THAT(fans(), testing::UnorderedElementsAre(Pair("CPU Fan", "1200"), Pair("Chassis Fan 1", "800")));
}

TEST_F(HwmonRegistryTest, FansOfChipsThatAreAlikeAreAllShown) {
    for (const int chip : {0, 1}) {
        addChip(chip, "nct7904");
        addFan(1, "1200", "CPU Fan");
        addFan(2, "1200");
    }
    EXPECT_THAT(fans(), testing::UnorderedElementsAre(Pair("CPU Fan", "1200"), Pair("CPU Fan", "1200"),
                                                      Pair("fan2", "1200"), Pair("fan2", "1200")));
}

TEST_F(HwmonRegistryTest, FansOfOtherChipsAreKeysOnly) {
    addChip(0, "thinkpad");
    addFan(1, "2500");
    EXPECT_THAT(fans(), IsEmpty());
    EXPECT_THAT(shownSpeeds(), ElementsAre(Pair("2500", 1)));
}

TEST_F(HwmonRegistryTest, AFanThatCannotBeReadIsLeftOutAndNothingElse) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    addFan(2, "1300", "Faulty Fan");
    tree.write(folder / "fan2_fault", "1\n");
    addFan(3, "65535", "Missing Fan");
    addFan(4, "-1", "Negative Fan");
    addFan(5, "fast", "Worded Fan");
    addFan(6, "", "Empty Fan");
    addFan(8, "1400", "Sound Fan");
    tree.write(folder / "fan8_fault", "0\n");
    EXPECT_THAT(fans(), ElementsAre(Pair("CPU Fan", "1200"), Pair("Sound Fan", "1400")));
}

/// Graphics cards tell by that file whether the speed is set by hand.
TEST_F(HwmonRegistryTest, AFanThatControlsItselfIsThere) {
    addChip(0, "amdgpu");
    addFan(1, "1700");
    tree.write(folder / "fan1_enable", "0\n");
    EXPECT_THAT(shownSpeeds(), ElementsAre(Pair("1700", 1)));
}

TEST_F(HwmonRegistryTest, NoFanIsShownTwice) {
    addChip(0, "nct6798");
    addFan(1, "1001", "CPU Fan");
    addFan(2, "1002", "Water Pump");
    addFan(3, "1003", "Rear Fan");
    addFan(4, "1004", "Rear Fan");
    addFan(5, "1005");
    addFan(6, "1006", "F1Ac");
    addChip(1, "thinkpad");
    addFan(1, "1007");
    const auto speeds = shownSpeeds();
    for (const std::string_view speed : {"1001", "1002", "1003", "1004", "1005", "1006", "1007"}) {
        SCOPED_TRACE(speed);
        const auto found = speeds.find(std::string(speed));
        EXPECT_EQ(found == speeds.end() ? 0 : found->second, 1);
    }
    EXPECT_EQ(speeds.size(), 7U);
}

TEST_F(HwmonRegistryTest, FansThatFindNoRoomInTheRegistryAreKeys) {
    addChip(0, "nct6798");
    for (int fan = 1; fan <= 12; ++fan) {
        addFan(fan, std::to_string(1000 + fan), std::string("Fan at ").append(std::to_string(fan)));
    }
    const auto speeds = shownSpeeds();
    EXPECT_EQ(speeds.size(), 12U);
    for (const auto& [speed, count] : speeds) EXPECT_EQ(count, 1) << speed;
    std::vector<std::string> keys;
    for (const SMCKeyResult& fan : SMCBridge::readSMCSuperIOFans()) keys.push_back(fan.textOr("key", ""));
    EXPECT_THAT(keys, ElementsAre("FAN0", "FAN1", "FAN2", "FAN3", "FAN4", "FAN5", "FAN6", "FAN7"));
}

TEST_F(HwmonRegistryTest, SpeedsAreKeptForFifteenSeconds) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    EXPECT_THAT(fans(), ElementsAre(Pair("CPU Fan", "1200")));
    addFan(1, "1300", "CPU Fan");
    EXPECT_THAT(fansAtThisMoment(), ElementsAre(Pair("CPU Fan", "1200")));
    clock->advance(15s - 1ns);
    EXPECT_THAT(fansAtThisMoment(), ElementsAre(Pair("CPU Fan", "1200")));
    clock->advance(1ns);
    EXPECT_THAT(fansAtThisMoment(), ElementsAre(Pair("CPU Fan", "1300")));
}

TEST_F(HwmonRegistryTest, FansFollowTheDevicesThatWereLookedForLast) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    EXPECT_THAT(fans(), ElementsAre(Pair("CPU Fan", "1200")));
    addFan(2, "900", "Rear Fan");
    clock->advance(15s);
    EXPECT_THAT(fans(), ElementsAre(Pair("CPU Fan", "1200"), Pair("Rear Fan", "900")));
    tree.remove("sys");
    clock->advance(15s);
    EXPECT_THAT(fans(), IsEmpty());
}

// Entries

TEST_F(HwmonRegistryTest, EveryChipIsAnEntryOfTheServicePlaneOnly) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    addChip(1, "k10temp");
    tree.write(folder / "temp1_input", "45000\n");
    static_cast<void>(SMCBridge::discoverKeys());
    for (const std::string_view plane : {"", "IOPower", "IOUSB", "IODeviceTree", "ioservice"}) {
        SCOPED_TRACE(plane);
        EXPECT_EQ(machine.registry->iterateRecursively(plane), nullptr);
    }

    const auto entries = machine.registry->iterateRecursively("IOService");
    ASSERT_NE(entries, nullptr);
    std::map<std::string, std::string> classes;
    while (const IORegistryEntry* const entry = entries->next()) {
        const std::string chip = entry->name().substr(0, entry->name().find('@'));
        classes[chip] = entry->className();
        const auto properties = entry->properties();
        ASSERT_TRUE(properties);
        const auto* const device = properties->find<std::string>("device");
        ASSERT_NE(device, nullptr);
        EXPECT_EQ(entry->textProperty("device"), *device);
        EXPECT_THAT(*device, testing::HasSubstr(chip));
        EXPECT_EQ(entry->textProperty("model"), std::nullopt);
        const auto* const speed = properties->find<std::int64_t>("CPU Fan");
        EXPECT_EQ(speed != nullptr, chip == "nct6798");
    }
    EXPECT_THAT(classes, ElementsAre(Pair("k10temp", "HwmonDevice"), Pair("nct6798", "HwmonSuperIO")));
    EXPECT_EQ(entries->next(), nullptr) << "the end stays the end";
}

TEST_F(HwmonRegistryTest, AWalkGoesOnOverTheListThatItBeganWith) {
    addChip(0, "nct6798");
    addFan(1, "1200", "CPU Fan");
    static_cast<void>(SMCBridge::discoverKeys());
    const auto entries = machine.registry->iterateRecursively("IOService");
    ASSERT_NE(entries, nullptr);
    tree.remove("sys");
    EXPECT_THAT(SMCBridge::discoverKeys(), IsEmpty());
    const IORegistryEntry* const entry = entries->next();
    ASSERT_NE(entry, nullptr);
    EXPECT_THAT(entry->name(), testing::StartsWith("nct6798"));
    EXPECT_EQ(entries->next(), nullptr);
}

} // namespace

} // namespace kelvinbar
