// Any chips and labels, through the tables that name them. Input: a line "c|NAME|DEVICE|MODEL|NETWORK" for
// each chip, and after it a line for each channel: a letter for its kind, its number and its label, as in
// "a|3|Tccd1".

#include "base/Text.h"
#include "catalogue/SMCCategory.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "machines/linux/naming/ChipName.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "machines/linux/naming/SensorNames.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

constexpr std::size_t mostLines = 64;

/// The last two parts of a device's path, nearest first, on a bus that the text of a part suggests.
std::vector<DeviceStep> stepsOf(std::string_view device) {
    std::vector<DeviceStep> steps;
    for (const std::string_view part : parts(device, '/', 4)) {
        const std::string_view bus = contains(part, ":")    ? "pci"
                                     : contains(part, "-0") ? "i2c"
                                     : contains(part, ".")  ? "platform"
                                                            : "";
        steps.insert(steps.begin(), {std::string(part), std::string(bus)});
    }
    return steps;
}

SensorChip chipOf(const std::vector<std::string_view>& fields) {
    SensorChip chip;
    chip.name = field(fields, 1);
    chip.stableName = chip.name;
    chip.device = field(fields, 2);
    chip.model = field(fields, 3);
    chip.network = field(fields, 4);
    chip.sensorsName = chipName(chip.name, stepsOf(chip.device));
    return chip;
}

/// Of the kinds that hardware monitors number.
SensorChannel channelOf(const std::vector<std::string_view>& fields) {
    constexpr std::string_view kinds = "abcdefg";
    constexpr SensorKind kindOf[] = {SensorKind::temperature, SensorKind::voltage, SensorKind::current,
                                     SensorKind::power,       SensorKind::energy,  SensorKind::fan,
                                     SensorKind::humidity};
    const std::size_t kind = kinds.find(fields.front());
    const std::string_view digits = field(fields, 1);
    const int number = digits.empty() ? 1 : static_cast<unsigned char>(digits.front()) % 16;
    SensorChannel channel(kindOf[kind < kinds.size() ? kind : 0], number);
    channel.label = field(fields, 2);
    channel.isLabelled = !channel.label.empty();
    return channel;
}

bool hasChannel(const SensorChip& chip, const SensorChannel& channel) {
    return std::ranges::any_of(chip.channels, [&](const SensorChannel& other) {
        return other.kind == channel.kind && other.number == channel.number;
    });
}

/// As the kernel guarantees, no two chips are one device, and no two channels of a chip have one name.
std::vector<SensorChip> chipsOf(std::string_view input) {
    std::vector<SensorChip> chips;
    std::set<std::string, std::less<>> devices;
    bool isNew = false;
    for (const std::string_view line : parts(input, '\n', mostLines)) {
        const auto fields = parts(line, '|', 5);
        if (fields.front() == "c") {
            isNew = devices.emplace(field(fields, 2)).second;
            if (isNew) chips.push_back(chipOf(fields));
        } else if (isNew) {
            const SensorChannel channel = channelOf(fields);
            if (!hasChannel(chips.back(), channel)) chips.back().channels.push_back(channel);
        }
    }
    return chips;
}

/// By key.
using Names = std::map<std::string, SensorName>;

Names namesOf(const std::vector<SensorChip>& chips) {
    const auto lists = sensorNames(chips);
    check(lists.size() == chips.size(), "each chip has a list of names");
    Names names;
    for (std::size_t index = 0; index < chips.size(); ++index) {
        check(lists[index].size() == chips[index].channels.size(), "each channel has an entry");
        for (const auto& name : lists[index]) {
            if (name) check(names.emplace(name->key, *name).second, "keys are unique");
        }
    }
    return names;
}

void checkName(const SensorName& name) {
    check(isValidUtf8(name.key) && isSensorKey(name.key), "a key is one of a sensor");
    check(isValidUtf8(name.name) && trimmed(name.name) == name.name, "a name is clean text");
    check(!name.name.empty() && characterCount(name.name) <= 40, "a name has 1 to 40 characters");
}

void nameChips(std::string_view input) {
    std::vector<SensorChip> chips = chipsOf(input);
    const Names names = namesOf(chips);
    std::set<std::string> seen;
    for (const auto& [key, name] : names) {
        checkName(name);
        check(seen.insert(name.name).second, "names are unique");
    }
    std::ranges::reverse(chips);
    const Names again = namesOf(chips);
    check(std::ranges::equal(names, again,
                             [](const auto& left, const auto& right) {
                                 return left.first == right.first && left.second.name == right.second.name;
                             }),
          "names do not depend on the order of chips");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::nameChips(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
