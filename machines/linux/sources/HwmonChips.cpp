#include "machines/linux/sources/HwmonChips.h"

#include "base/NaturalOrder.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/naming/ChipName.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

using FileNames = std::set<std::string, std::less<>>;

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

FileNames fileNames(const fs::path& folder) {
    std::vector<std::string> entries = folderEntries(folder);
    return {std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end())};
}

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

/// Old drivers put the name and all channels into the device's folder.
bool areChannelsOnDevice(const fs::path& entry, const FileNames& names) {
    return !names.contains("name") && names.contains("device") && isThere(entry / "device/name");
}

std::vector<fs::path> powerStates(const fs::path& entry) {
    std::vector<fs::path> states;
    // The device, and the one that it is a function of, such as a drive's controller.
    for (const char* const file : {"device/power/runtime_status", "device/device/power/runtime_status"}) {
        const auto status = systemFileLine(entry / file);
        if (status && *status != "unsupported") states.push_back(entry / file);
    }
    return states;
}

bool isAnyAsleep(const std::vector<fs::path>& states) {
    return std::ranges::any_of(states, [](const fs::path& state) {
        return systemFileLine(state).value_or("").starts_with("suspend");
    });
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

/// The devices behind a hwmon entry, following the `device` links.
std::vector<DeviceStep> deviceSteps(fs::path entry) {
    constexpr std::size_t maximumSteps = 8;
    std::vector<DeviceStep> steps;
    while (steps.size() < maximumSteps) {
        const fs::path device = linkTarget(entry / "device");
        if (device.empty()) break;
        entry /= "device";
        const fs::path subsystem = linkTarget(entry / "subsystem");
        steps.push_back({device.filename().string(), subsystem.filename().string()});
    }
    return steps;
}

/// The first entry of a folder; empty without one.
std::string firstEntry(const fs::path& folder) {
    const FileNames names = fileNames(folder);
    return names.empty() ? std::string() : *names.begin();
}

/// The model is an attribute of the drive. Older kernels attach the chip to the controller above the drive.
std::string driveModel(const fs::path& entry) {
    if (const auto model = systemFileLine(entry / "device/model")) return *model;
    const fs::path drives = entry / "device/nvme";
    const std::string drive = firstEntry(drives);
    return drive.empty() ? drive : systemFileLine(drives / drive / "model").value_or("");
}

/// The network interface of the chip's device, or of a device up to a few folders above (the chip may be in a
/// radio or in a transceiver on the card's own bus). A bridge has none.
std::string networkInterface(const fs::path& devices, fs::path folder) {
    constexpr int maximumFolders = 4;
    for (int step = 0; !folder.empty() && step < maximumFolders && folder != devices; ++step) {
        std::string interface = firstEntry(folder / "net");
        if (!interface.empty()) return interface;
        if (folder == folder.root_path()) break;
        folder = folder.parent_path();
    }
    return {};
}

/// Sets what is known of the device behind the chip.
void describeDevice(SensorChip& chip, const DeviceTree& devices, const fs::path& device) {
    chip.model = driveModel(chip.entry);
    chip.network = networkInterface(devices.folder(), device);
    chip.powerStates = powerStates(chip.entry);
}

SensorChip chipAt(const DeviceTree& devices, const fs::path& entry) {
    FileNames names = fileNames(entry);
    const bool hasDevice = names.contains("device");
    const fs::path device = hasDevice ? canonicalPath(entry / "device") : fs::path();
    SensorChip chip;
    chip.entry = chip.folder = entry;
    if (areChannelsOnDevice(entry, names)) {
        chip.folder /= "device";
        names = fileNames(chip.folder);
    }
    chip.device = devices.pathOf(entry, device);
    chip.name = systemFileLine(chip.folder / "name").value_or("");
    chip.stableName = chip.device.empty() ? chip.name : withoutCounter(chip.name);
    chip.sensorsName = chipName(chip.name.empty() ? "hwmon" : chip.name, deviceSteps(entry));
    if (hasDevice) describeDevice(chip, devices, device);
    chip.channels = channelsIn(chip.folder, names, isAnyAsleep(chip.powerStates));
    appendFanOutputs(chip, names);
    return chip;
}

} // namespace

std::vector<SensorChip> hwmonChips(const fs::path& root) {
    std::vector<SensorChip> chips;
    const DeviceTree devices(root);
    for (const fs::path& entry : visitedClassEntries(root, "hwmon")) {
        const DeviceVisit visit(entry.native(), LogCategory::sourceKernel);
        if (visit.isAllowed()) chips.push_back(chipAt(devices, entry));
    }
    std::ranges::stable_sort(chips, [](const SensorChip& left, const SensorChip& right) {
        if (comesBeforeNaturally(left.device, right.device)) return true;
        if (comesBeforeNaturally(right.device, left.device)) return false;
        return left.name < right.name;
    });
    return chips;
}

} // namespace kelvinbar
