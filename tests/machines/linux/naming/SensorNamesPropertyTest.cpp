// Properties of the keys and names of any machine, tested on random machines. The sequence is the same in
// every run; a failure names its machine.

#include "base/Text.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/NamedDevices.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "machines/linux/naming/SensorNames.h"
#include "machines/linux/naming/SensorWords.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_names_property_test {

namespace {

using enum SensorKind;

/// Makes the same choices on every system, unlike the distributions of the standard library.
class Chance {
  public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return engine_() % limit; }

    template <typename List>
    auto oneOf(const List& list) {
        return list[below(list.size())];
    }

    template <typename List>
    void shuffle(List& list) {
        for (std::size_t left = list.size(); left > 1; --left) std::swap(list[left - 1], list[below(left)]);
    }

  private:
    std::mt19937 engine_;
};

constexpr std::array<std::string_view, 30> chipNames{
    "coretemp",     "k10temp",      "zenpower", "amdgpu",    "nouveau",     "i915",
    "nvme",         "drivetemp",    "spd5118",  "iwlwifi_1", "mt7921_phy0", "r8169_0_300:00",
    "igc",          "acpitz",       "pch_adl",  "nct6798",   "it8628",      "asusec",
    "gigabyte_wmi", "macsmc_hwmon", "thinkpad", "asus",      "corsairpsu",  "BAT0",
    "power_meter",  "pwmfan",       "sht4x",    "bogus",     "ABCD",        ""};

constexpr std::array<std::string_view, 24> labels{
    "Tctl",         "Tccd1",       "Core 0",
    "Package id 0", "edge",        "junction",
    "Composite",    "Sensor 1",    "SYSTIN",
    "AUXTIN0",      "CPU",         "CPU Fan",
    "GPU core",     "VRM1",        "TC0P",
    "+3.3V",        "\x01",        " Main \t fan ",
    "T\xB0 in",     "Temperature", "Temperature 2",
    "loc1",         "fan",         "a label that is much longer than a name may ever be in the list"};

constexpr std::array kinds{temperature, voltage,   current,  power,     energy,
                           fan,         frequency, humidity, fanMinimum};

constexpr std::array<std::string_view, 5> models{"", "Samsung SSD 980", "Samsung SSD 980",
                                                 "WD_BLACK SN850X 2000GB",
                                                 "A model with a name that no list has the room for"};
constexpr std::array<std::string_view, 3> interfaces{"", "enp3s0", "wlan0"};

SensorChannel channelByChance(Chance& chance, int number) {
    SensorChannel channel(chance.oneOf(kinds), number);
    channel.isLabelled = chance.below(2) == 0;
    channel.label = channel.isLabelled ? std::string(chance.oneOf(labels)) : featureOf(channel);
    return channel;
}

/// A chip at a bus address of its own; `place` is also the address in its name.
SensorChip chipByChance(Chance& chance, std::size_t place) {
    SensorChip chip;
    chip.name = chip.stableName = chance.oneOf(chipNames);
    chip.sensorsName = chip.name + "-pci-" + std::to_string(1000 + place);
    chip.device = "pci0000:00/0000:00:" + std::to_string(10 + place) + ".0";
    chip.model = chance.oneOf(models);
    chip.network = chance.oneOf(interfaces);
    const std::size_t channels = 1 + chance.below(8);
    for (std::size_t number = 1; number <= channels; ++number) {
        chip.channels.push_back(channelByChance(chance, static_cast<int>(number)));
    }
    return chip;
}

std::vector<SensorChip> machineByChance(Chance& chance) {
    std::vector<SensorChip> chips;
    const std::size_t count = 1 + chance.below(12);
    for (std::size_t place = 0; place < count; ++place) chips.push_back(chipByChance(chance, place));
    return chips;
}

/// Chips that have the same name in libsensors.
void makeSomeAlike(Chance& chance, std::vector<SensorChip>& chips) {
    for (SensorChip& chip : chips) {
        if (chance.below(3) != 0) continue;
        chip.name = chip.stableName = "power_meter";
        chip.sensorsName = "power_meter-acpi-0";
    }
}

using Readings = std::map<std::string, std::tuple<std::string, SMCCategory, std::string, std::string>>;
/// By device and feature.
using Keys = std::map<std::pair<std::string, std::string>, std::string>;

Readings readingsOf(const std::vector<SensorChip>& chips) {
    Readings readings;
    for (const auto& ofChip : sensorNames(chips)) {
        for (const auto& reading : ofChip) {
            if (reading)
                readings[reading->key] = {reading->name, reading->category, reading->unit, reading->type};
        }
    }
    return readings;
}

Keys keysOf(const std::vector<SensorChip>& chips) {
    Keys keys;
    const auto names = sensorNames(chips);
    for (std::size_t chip = 0; chip < chips.size(); ++chip) {
        for (std::size_t index = 0; index < names[chip].size(); ++index) {
            const auto& reading = names[chip][index];
            if (reading) keys[{chips[chip].device, featureOf(chips[chip].channels[index])}] = reading->key;
        }
    }
    return keys;
}

class GeneratedMachines : public testing::Test {
  protected:
    static constexpr unsigned machines = 400;

    template <typename Check>
    static void forEachMachine(Check check) {
        for (unsigned seed = 0; seed < machines; ++seed) {
            SCOPED_TRACE(seed);
            Chance chance(seed);
            check(machineByChance(chance), chance);
            if (HasFailure()) return;
        }
    }
};

TEST_F(GeneratedMachines, HaveAReadingForEveryChannelThatMeasuresAndForNoOther) {
    forEachMachine([](const std::vector<SensorChip>& chips, Chance&) {
        const auto names = sensorNames(chips);
        ASSERT_EQ(names.size(), chips.size());
        for (std::size_t chip = 0; chip < chips.size(); ++chip) {
            ASSERT_EQ(names[chip].size(), chips[chip].channels.size());
            for (std::size_t index = 0; index < names[chip].size(); ++index) {
                EXPECT_EQ(names[chip][index].has_value(), isMeasured(chips[chip].channels[index]));
            }
        }
    });
}

TEST_F(GeneratedMachines, HaveNoKeyAndNoNameTwice) {
    forEachMachine([](std::vector<SensorChip> chips, Chance& chance) {
        makeSomeAlike(chance, chips);
        std::set<std::string> keys;
        std::set<std::string> names;
        for (const auto& ofChip : sensorNames(chips)) {
            for (const auto& reading : ofChip) {
                if (!reading) continue;
                EXPECT_TRUE(keys.insert(reading->key).second) << reading->key;
                EXPECT_TRUE(names.insert(reading->name).second) << reading->name;
            }
        }
    });
}

TEST_F(GeneratedMachines, HaveNamesThatAPersonCanRead) {
    forEachMachine([](const std::vector<SensorChip>& chips, Chance&) {
        for (const auto& [key, reading] : readingsOf(chips)) {
            const std::string& name = std::get<0>(reading);
            EXPECT_GE(characterCount(name), 1U) << key;
            EXPECT_LE(characterCount(name), 40U) << name;
            EXPECT_TRUE(isValidUtf8(name)) << name;
            EXPECT_EQ(cleanedText(name), name);
            EXPECT_FALSE(characterCount(name) == 4 && !contains(name, " ")) << name;
        }
    });
}

TEST_F(GeneratedMachines, HaveTheSameReadingsInWhateverOrderTheirChipsAreFound) {
    forEachMachine([](std::vector<SensorChip> chips, Chance& chance) {
        makeSomeAlike(chance, chips);
        const Readings readings = readingsOf(chips);
        const Keys keys = keysOf(chips);
        chance.shuffle(chips);
        EXPECT_EQ(readingsOf(chips), readings);
        EXPECT_EQ(keysOf(chips), keys);
    });
}

TEST_F(GeneratedMachines, KeepTheKeysOfChipsThatStayWhenOthersGoAndComeBack) {
    forEachMachine([](std::vector<SensorChip> chips, Chance& chance) {
        const Keys before = keysOf(chips);
        const Readings readings = readingsOf(chips);
        const auto place = chips.begin() + static_cast<std::ptrdiff_t>(chance.below(chips.size()));
        const SensorChip gone = *place;
        chips.erase(place);
        for (const auto& [channel, key] : keysOf(chips)) EXPECT_EQ(key, before.at(channel));
        chips.push_back(gone);
        EXPECT_EQ(readingsOf(chips), readings);
    });
}

/// The words of a label, without separators.
std::vector<std::string> wordsOf(std::string_view label) {
    std::vector<std::string> words(1);
    for (const char character : cleanedText(label)) {
        if (character != ' ') {
            words.back() += character;
        } else {
            words.emplace_back();
        }
    }
    return words;
}

TEST_F(GeneratedMachines, HaveTheirLabelsInTheirNamesUnlessARowHasOtherWords) {
    constexpr std::size_t longestLabel = 15;
    std::size_t tried = 0;
    std::size_t cut = 0; // to make it unique
    forEachMachine([&tried, &cut](const std::vector<SensorChip>& chips, Chance&) {
        const auto names = sensorNames(chips);
        for (std::size_t chip = 0; chip < chips.size(); ++chip) {
            for (std::size_t index = 0; index < names[chip].size(); ++index) {
                const SensorChannel& channel = chips[chip].channels[index];
                const std::string label = cleanedText(channel.label);
                const bool isShort = characterCount(label) <= longestLabel;
                if (!names[chip][index] || !channel.isLabelled || !isShort) continue;
                const std::string type = chips[chip].network.empty() ? typeOf(chips[chip]) : "igc";
                if (labelRowOf(typeOf(chips[chip]), channel.kind, label) != nullptr) continue;
                if (labelRowOf(type, channel.kind, label) != nullptr) continue;
                ++tried;
                if (contains(names[chip][index]->name, "…")) {
                    ++cut;
                    continue;
                }
                for (const std::string& word : wordsOf(label)) {
                    EXPECT_TRUE(contains(names[chip][index]->name, word)) << names[chip][index]->name;
                }
            }
        }
    });
    EXPECT_GT(tried, 1000U);
    EXPECT_LT(cut, tried / 100);
}

TEST_F(GeneratedMachines, HaveReadingsWhoseMeaningCanBeToldFromTheirLines) {
    forEachMachine([](const std::vector<SensorChip>& chips, Chance&) {
        for (const auto& [key, reading] : readingsOf(chips)) {
            const auto& [name, category, unit, type] = reading;
            const auto meaning = meaningOfLine(key, type, name, "1.5 " + unit);
            ASSERT_TRUE(meaning) << key;
            EXPECT_EQ(meaning->category, category) << name;
            EXPECT_EQ(meaning->unit, unit) << name;
        }
    });
}

} // namespace
} // namespace kelvinbar::sensor_names_property_test
