#include "machines/linux/sources/HwmonChips.h"

#include "base/NaturalOrder.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/naming/ChipName.h"
#include "machines/linux/sources/ChipDevice.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// A kind of channel file: "temp3_input" consists of prefix, number and item.
struct ChannelFile {
    std::string_view prefix;
    std::string_view item;
    SensorKind kind;
    double countsPerUnit;
};

/// Of two files with the same value, the first that exists wins.
constexpr std::array channelFiles{
    ChannelFile{"temp", "input", SensorKind::temperature, 1e3},
    ChannelFile{"in", "input", SensorKind::voltage, 1e3},
    ChannelFile{"curr", "input", SensorKind::current, 1e3},
    ChannelFile{"power", "input", SensorKind::power, 1e6},
    ChannelFile{"power", "average", SensorKind::power, 1e6},
    ChannelFile{"energy", "input", SensorKind::energy, 1e6},
    ChannelFile{"fan", "input", SensorKind::fan, 1},
    ChannelFile{"fan", "min", SensorKind::fanMinimum, 1},
    ChannelFile{"fan", "max", SensorKind::fanMaximum, 1},
    ChannelFile{"fan", "target", SensorKind::fanTarget, 1},
    ChannelFile{"fan", "output", SensorKind::fanTarget, 1},
    ChannelFile{"fan", "safe", SensorKind::fanSafe, 1},
    ChannelFile{"fan", "manual", SensorKind::fanMode, 1},
    ChannelFile{"freq", "input", SensorKind::frequency, 1e6},
    ChannelFile{"humidity", "input", SensorKind::humidity, 1e3},
};

/// The number in a file name such as "temp3_input", if prefix and item match.
std::optional<int> channelNumber(std::string_view name, const ChannelFile& kind) {
    if (!name.starts_with(kind.prefix)) return std::nullopt;
    name.remove_prefix(kind.prefix.size());
    const std::size_t line = name.find('_');
    if (line == std::string_view::npos || name.substr(line + 1) != kind.item) return std::nullopt;
    const bool isPadded = line > 1 && name.front() == '0';
    return isPadded ? std::nullopt : wholeNumberIn<std::uint16_t>(name.substr(0, line));
}

/// Reads the constant parts of a channel: its label, and whether it is disabled.
class ChannelReader {
  public:
    ChannelReader(const fs::path& folder, const FileNames& names, bool isAsleep)
        : folder_(folder), names_(names), isAsleep_(isAsleep) {}

    [[nodiscard]] SensorChannel channel(const ChannelFile& kind, int number) const {
        const std::string stem = std::string(kind.prefix).append(std::to_string(number));
        SensorChannel channel(kind.kind, number);
        channel.feature = stem;
        channel.countsPerUnit = kind.countsPerUnit;
        channel.label = textOf(stem + "_label");
        channel.isLabelled = !channel.label.empty();
        if (!channel.isLabelled) channel.label = stem;
        // A disabled channel keeps its key, but has no file to read.
        if (!isSwitchedOff(kind, stem)) {
            channel.file = folder_ / std::string(stem).append("_").append(kind.item);
        }
        const std::string fault = stem + "_fault";
        if (kind.item == "input" && names_.contains(fault)) channel.fault = folder_ / fault;
        return channel;
    }

  private:
    /// For fans, graphics drivers use this file for the control mode.
    [[nodiscard]] bool isSwitchedOff(const ChannelFile& kind, const std::string& stem) const {
        return kind.prefix != "fan" && !isAsleep_ && textOf(stem + "_enable") == "0";
    }

    [[nodiscard]] std::string textOf(const std::string& name) const {
        return names_.contains(name) ? systemFileLine(folder_ / name).value_or("") : std::string();
    }

    const fs::path& folder_;
    const FileNames& names_;
    bool isAsleep_; ///< reading "_enable" wakes the device on some drivers
};

bool isEarlierChannel(const SensorChannel& left, const SensorChannel& right) {
    return std::pair(left.kind, left.number) < std::pair(right.kind, right.number);
}

std::vector<SensorChannel> channelsIn(const fs::path& folder, const FileNames& names, bool isAsleep) {
    const ChannelReader reader(folder, names, isAsleep);
    std::vector<SensorChannel> channels;
    for (const ChannelFile& kind : channelFiles) {
        for (auto name = names.lower_bound(kind.prefix); name != names.end(); ++name) {
            if (!name->starts_with(kind.prefix)) break;
            if (const auto number = channelNumber(*name, kind)) {
                channels.push_back(reader.channel(kind, *number));
            }
        }
    }
    std::ranges::stable_sort(channels, isEarlierChannel);
    const auto same = [](const SensorChannel& left, const SensorChannel& right) {
        return left.kind == right.kind && left.number == right.number;
    };
    channels.erase(std::unique(channels.begin(), channels.end(), same), channels.end());
    return channels;
}

/// The number in "pwm2".
std::optional<int> outputNumber(std::string_view name) {
    constexpr std::string_view prefix = "pwm";
    if (!name.starts_with(prefix)) return std::nullopt;
    name.remove_prefix(prefix.size());
    return name.starts_with('0') ? std::nullopt : wholeNumberIn<std::uint16_t>(name);
}

/// The duty cycles of fans, for a chip that measures no speed.
void appendFanOutputs(SensorChip& chip, const FileNames& names) {
    constexpr double fullOutput = 255;
    if (std::ranges::find(chip.channels, SensorKind::fan, &SensorChannel::kind) != chip.channels.end())
        return;
    for (auto name = names.lower_bound("pwm"); name != names.end() && name->starts_with("pwm"); ++name) {
        const auto number = outputNumber(*name);
        if (!number) continue;
        SensorChannel output(SensorKind::percent, *number);
        output.feature = output.label = *name;
        output.file = chip.folder / *name;
        output.countsPerUnit = fullOutput / 100;
        chip.channels.push_back(std::move(output));
    }
}

/// "iwlwifi_1" and "mt7921_phy0" without the number that increases each time the driver is loaded.
std::string withoutCounter(std::string_view name) {
    const std::size_t line = name.rfind('_');
    if (line == std::string_view::npos || line + 1 == name.size()) return std::string(name);
    std::string_view counter = name.substr(line + 1);
    if (counter.starts_with("phy")) counter.remove_prefix(3);
    const bool isCounter = std::ranges::all_of(counter, [](char digit) { return isDecimalDigit(digit); });
    return std::string(isCounter ? name.substr(0, line) : name);
}

/// Reads the chips of one machine.
class ChipReader {
  public:
    explicit ChipReader(const fs::path& root) : devices_(root), interfaces_(devices_.folder()) {}

    SensorChip chipAt(const fs::path& entry) {
        const FileNames names = fileNames(entry);
        const ChipDevice device = names.contains("device") ? ChipDevice(entry / "device") : ChipDevice();
        // Old drivers put the name and all channels into the device's folder.
        const bool isOnDevice = !names.contains("name") && device.names().contains("name");
        SensorChip chip;
        chip.entry = entry;
        chip.folder = isOnDevice ? device.link() : entry;
        chip.device = devices_.pathOf(entry, device.folder());
        chip.name = systemFileLine(chip.folder / "name").value_or("");
        chip.stableName = chip.device.empty() ? chip.name : withoutCounter(chip.name);
        chip.sensorsName = chipName(chip.name.empty() ? "hwmon" : chip.name, deviceSteps(device));
        chip.model = driveModel(device);
        chip.network = interfaces_.of(device);
        ChipPower power = chipPower(device);
        chip.powerStates = std::move(power.states);
        setChannels(chip, isOnDevice ? device.names() : names, power.isAsleep);
        return chip;
    }

  private:
    static void setChannels(SensorChip& chip, const FileNames& names, bool isAsleep) {
        chip.channels = channelsIn(chip.folder, names, isAsleep);
        appendFanOutputs(chip, names);
    }

    DeviceTree devices_;
    NetworkInterfaces interfaces_;
};

} // namespace

std::vector<SensorChip> hwmonChips(const fs::path& root) {
    std::vector<SensorChip> chips;
    ChipReader reader(root);
    for (const fs::path& entry : visitedClassEntries(root, "hwmon")) {
        const DeviceVisit visit(entry.native(), LogCategory::sourceKernel);
        if (visit.isAllowed()) chips.push_back(reader.chipAt(entry));
    }
    std::ranges::stable_sort(chips, [](const SensorChip& left, const SensorChip& right) {
        if (comesBeforeNaturally(left.device, right.device)) return true;
        if (comesBeforeNaturally(right.device, left.device)) return false;
        return left.name < right.name;
    });
    return chips;
}

} // namespace kelvinbar
