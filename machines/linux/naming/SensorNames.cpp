#include "machines/linux/naming/SensorNames.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "machines/linux/naming/SensorWords.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <utility>

namespace kelvinbar {

namespace {

using enum SensorKind;

/// A chip with what its readings have in common.
struct NamedDevice {
    const SensorChip* chip = nullptr;
    std::string keyStart; ///< of its keys, up to the slash
    std::string type;
    std::string family; ///< the name that the tables know it by
    const DeviceRow* row = nullptr;
    std::string words;
    int number = 1;
    bool isNumberShown = false;
    std::string detail; ///< model or interface, where that tells it apart
};

/// A channel on the way to its name.
struct NamedChannel {
    SensorName* reading = nullptr;
    SensorKind kind = temperature;
};

bool isApplesController(const SensorChip& chip) { return chip.name == "applesmc"; }

std::string_view featurePrefix(SensorKind kind) {
    switch (kind) {
    case voltage:
        return "in";
    case current:
        return "curr";
    case power:
        return "power";
    case energy:
        return "energy";
    case fan:
        return "fan";
    case frequency:
        return "freq";
    case humidity:
        return "humidity";
    default:
        return "temp";
    }
}

std::string featureOf(const SensorChannel& channel) {
    if (!channel.feature.empty()) return channel.feature;
    return std::string(featurePrefix(channel.kind)).append(std::to_string(channel.number));
}

bool isMeasured(const SensorChannel& channel) {
    switch (channel.kind) {
    case fanMinimum:
    case fanMaximum:
    case fanTarget:
    case fanSafe:
    case fanMode:
        return false;
    default:
        return true;
    }
}

bool isSupply(const SensorChip& chip) {
    return contains(chip.name, ":") && chip.name == std::string(chip.stableName).append(chip.sensorsName);
}

/// The name of the hwmon chip that the kernel makes for a supply.
std::string hwmonNameOf(const SensorChip& supply) { return replacedAll(supply.sensorsName, "-", "_"); }

bool hasKind(const SensorChip& chip, SensorKind kind) {
    return std::ranges::find(chip.channels, kind, &SensorChannel::kind) != chip.channels.end();
}

/// Whether a hwmon chip that the kernel made for this supply has channels of that kind. These are kept: other
/// tools know them by their keys.
bool isRepetition(const SensorChip& supply, SensorKind kind, const std::vector<SensorChip>& chips) {
    if (!isSupply(supply)) return false;
    const std::string name = hwmonNameOf(supply);
    return std::ranges::any_of(
        chips, [&](const SensorChip& chip) { return chip.name == name && hasKind(chip, kind); });
}

// Order

std::string contentOf(const SensorChip& chip) {
    std::string content;
    for (const SensorChannel& channel : chip.channels) {
        content.append(featureOf(channel)).append("=").append(channel.label).append("\n");
    }
    return content;
}

/// The part of a path up to the next slash, which the path loses.
std::string_view takeFolder(std::string_view& path) {
    const std::string_view folder = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(folder.size() + 1, path.size()));
    return folder;
}

/// Folder by folder. Addresses ("0000:0a:00.0") are hexadecimal numbers of one width and compare as text;
/// other names have decimal numbers.
bool isEarlierPath(std::string_view left, std::string_view right) {
    while (!left.empty() && !right.empty()) {
        const std::string_view mine = takeFolder(left);
        const std::string_view other = takeFolder(right);
        if (mine == other) continue;
        return contains(mine, ":") && contains(other, ":") ? mine < other : comesBeforeNaturally(mine, other);
    }
    return left.empty() && !right.empty();
}

bool isEarlier(const SensorChip& left, const SensorChip& right) {
    if (isEarlierPath(left.device, right.device)) return true;
    if (isEarlierPath(right.device, left.device)) return false;
    const auto identity = [](const SensorChip& chip) {
        return std::tuple(chip.device, chip.sensorsName, contentOf(chip), chip.folder);
    };
    return identity(left) < identity(right);
}

// Devices

std::string keyText(std::string_view text) {
    std::string key(text);
    const auto isControl = [](char character) {
        return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
    };
    std::ranges::replace_if(key, isControl, '_');
    return key;
}

/// Chips that no row names are known by their network interface, where they have one.
std::string familyOf(const SensorChip& chip, const std::string& type) {
    if (deviceRowOf(type) != nullptr || chip.network.empty()) return type;
    return chip.network.starts_with("w") ? "wlan0" : "eth0";
}

/// What an unknown chip is called: by its driver.
std::string driverWords(std::string_view type) {
    constexpr std::string_view zone = "_thermal";
    if (type.ends_with(zone) && type.size() > zone.size()) type.remove_suffix(zone.size());
    const std::string words = replacedAll(type, "_", " ");
    return words == "hwmon" ? "Sensor" : words;
}

/// The slot of a memory module: its place among the eight addresses that the bus keeps for them.
std::optional<int> slotOf(const SensorChip& chip) {
    constexpr int slots = 8;
    if (chip.place) return chip.place;
    const std::string_view name = chip.sensorsName;
    if (!contains(name, "-i2c-")) return std::nullopt;
    const std::string_view address = name.substr(name.rfind('-') + 1);
    int number = 0;
    const auto parsed = std::from_chars(address.data(), address.data() + address.size(), number, 16);
    return parsed.ec == std::errc() ? std::optional(number % slots) : std::nullopt;
}

NamedDevice deviceOf(const SensorChip& chip) {
    NamedDevice device;
    device.chip = &chip;
    device.type = typeOf(chip);
    device.keyStart = keyText(chip.sensorsName.empty() ? device.type : chip.sensorsName);
    device.family = familyOf(chip, device.type);
    device.row = deviceRowOf(device.family);
    device.words = device.row == nullptr ? driverWords(device.type) : std::string(device.row->words);
    return device;
}

TellApart tellApartOf(const NamedDevice& device) {
    return device.row == nullptr ? TellApart::byNumber : device.row->tellApart;
}

std::string detailOf(const NamedDevice& device) {
    switch (tellApartOf(device)) {
    case TellApart::byModel:
        return cleanedText(device.chip->model);
    case TellApart::byInterface:
        return cleanedText(device.chip->network);
    default:
        return {};
    }
}

/// The socket or slot that the device tells of itself.
std::optional<int> ownPlace(const NamedDevice& device) {
    switch (tellApartOf(device)) {
    case TellApart::bySocket:
        return device.chip->place;
    case TellApart::bySlot:
        return slotOf(*device.chip);
    default:
        return std::nullopt;
    }
}

/// Numbers the devices of each family. A supply and the hwmon chip that the kernel makes for it are one.
class DeviceCounter {
  public:
    explicit DeviceCounter(const std::vector<NamedDevice>& devices) {
        for (const NamedDevice& device : devices) {
            if (isSupply(*device.chip)) supplies_.insert(hwmonNameOf(*device.chip));
        }
        for (const NamedDevice& device : devices) families_[familyOf(device)].insert(identityOf(device));
    }

    [[nodiscard]] bool isAlone(const NamedDevice& device) const {
        return families_.at(familyOf(device)).size() == 1;
    }

    /// Counted from 1 among those with the same detail, in the order of the calls.
    int numberOf(const NamedDevice& device) {
        auto& seen = seen_[{familyOf(device), device.detail}];
        const std::string identity = identityOf(device);
        const auto place = std::ranges::find(seen, identity);
        const auto number = static_cast<int>(place - seen.begin()) + 1;
        if (place == seen.end()) seen.push_back(identity);
        return number;
    }

  private:
    static std::string familyOf(const NamedDevice& device) {
        return device.row == nullptr ? device.type : std::string(device.row->chips);
    }

    [[nodiscard]] std::string identityOf(const NamedDevice& device) const {
        if (isSupply(*device.chip)) return hwmonNameOf(*device.chip);
        return supplies_.contains(device.type) ? device.type : device.keyStart;
    }

    std::set<std::string> supplies_;
    std::map<std::string, std::set<std::string>> families_;
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> seen_;
};

void countDevices(std::vector<NamedDevice>& devices) {
    DeviceCounter counter(devices);
    for (NamedDevice& device : devices) {
        if (!counter.isAlone(device)) device.detail = detailOf(device);
        const std::optional<int> place = ownPlace(device);
        device.number = place ? *place + 1 : counter.numberOf(device);
        device.isNumberShown = device.number > 1 || tellApartOf(device) == TellApart::bySlot;
    }
}

void countKeys(std::vector<NamedDevice>& devices) {
    std::map<std::string, int> counts;
    for (NamedDevice& device : devices) {
        const int count = ++counts[device.keyStart];
        if (count > 1) device.keyStart.append("#").append(std::to_string(count));
    }
}

/// All chips with readings, in an order that does not depend on the one they came in.
std::vector<NamedDevice> devicesIn(const std::vector<SensorChip>& chips) {
    std::vector<const SensorChip*> order;
    for (const SensorChip& chip : chips) {
        const bool hasReadings = std::ranges::any_of(chip.channels, isMeasured);
        if (hasReadings && !isApplesController(chip)) order.push_back(&chip);
    }
    std::ranges::stable_sort(order,
                             [](const auto* left, const auto* right) { return isEarlier(*left, *right); });
    std::vector<NamedDevice> devices;
    for (const SensorChip* const chip : order) devices.push_back(deviceOf(*chip));
    countKeys(devices);
    countDevices(devices);
    return devices;
}

// Names

/// The words of a label, and whether they are the whole name.
struct LabelWords {
    std::string text;
    bool isWhole = false;
};

bool isOneOfSeveral(const NamedDevice& device, SensorKind kind) {
    return std::ranges::count(device.chip->channels, kind, &SensorChannel::kind) > 1;
}

std::string numbered(std::string_view words, const NamedDevice& device, const SensorChannel& channel) {
    if (!isOneOfSeveral(device, channel.kind) && channel.number <= 1) return std::string(words);
    return joined(words, std::to_string(channel.number));
}

std::string rowText(const LabelRow& row, const NamedDevice& device, const SensorChannel& channel,
                    const std::string& label) {
    if (row.words == "*") return label;
    if (row.words.empty()) return isOneOfSeveral(device, channel.kind) ? numbered("", device, channel) : "";
    const bool hasNumber = contains(row.words, "#");
    return hasNumber ? cleanedText(replacedAll(row.words, "#", lastNumber(label).value_or("")))
                     : std::string(row.words);
}

LabelWords labelWords(const NamedDevice& device, const SensorChannel& channel) {
    const std::string ownLabel = channel.isLabelled ? cleanedText(channel.label) : std::string();
    const std::string label = ownLabel.empty() ? featureOf(channel) : ownLabel;
    const bool isWhole = !ownLabel.empty() && device.row != nullptr && device.row->hasWholeLabels;
    if (const LabelRow* const row = labelRowOf(device.family, channel.kind, label)) {
        return {rowText(*row, device, channel, label), isWhole || row->isWhole};
    }
    if (ownLabel.empty()) return {numbered(kindWords(channel.kind), device, channel), false};
    return {label, isWhole};
}

/// Device, detail and label with what is too long made shorter: the detail first, then the device goes.
std::string composed(const std::string& device, const std::string& detail, const std::string& label) {
    const std::size_t used = characterCount(joined(device, label));
    if (used > longestSensorName) return cutText(label, longestSensorName);
    constexpr std::size_t shortestDetail = 4;
    const std::size_t room = longestSensorName - used;
    const bool hasRoom = room > shortestDetail;
    return joined(joined(device, hasRoom ? shortenedModel(detail, room - 1) : ""), label);
}

std::string nameOf(const NamedDevice& device, const SensorChannel& channel) {
    const auto [label, isWhole] = labelWords(device, channel);
    const bool needsDevice = device.isNumberShown || !device.detail.empty();
    if (isWhole && !needsDevice) return composed("", "", label);
    const std::string number = device.isNumberShown ? std::to_string(device.number) : "";
    const bool repeats = beginsWithWords(label, device.words);
    const std::string rest =
        repeats ? cleanedText(std::string_view(label).substr(device.words.size())) : label;
    return composed(joined(repeats ? label.substr(0, device.words.size()) : device.words, number),
                    device.detail, rest);
}

/// A name of four characters without a space looks like a key of Apple's controller.
std::string speakingName(std::string name, SensorKind kind) {
    constexpr std::size_t keyLength = 4;
    if (name.empty()) return std::string(kindWords(kind));
    const bool isLikeKey = characterCount(name) == keyLength && !contains(name, " ");
    return isLikeKey ? joined(name, kindWords(kind)) : name;
}

// Unique names

std::string withSuffix(std::string_view name, const std::string& suffix) {
    return cutText(name, longestSensorName - characterCount(suffix)).append(suffix);
}

std::string chipSuffix(const SensorName& reading) {
    constexpr std::size_t longestChip = 20;
    return std::string(" (").append(cutText(cleanedText(reading.type), longestChip)).append(")");
}

using Group = std::vector<NamedChannel>;

/// Readings by name, each group in the order of the readings.
std::map<std::string, Group> groupedByName(const std::vector<NamedChannel>& channels) {
    std::map<std::string, Group> groups;
    for (const NamedChannel& channel : channels) groups[channel.reading->name].push_back(channel);
    return groups;
}

void appendKind(const NamedChannel& channel) {
    std::string& name = channel.reading->name;
    const std::string kind(kindWords(channel.kind));
    if (!contains(asciiLowercased(name), asciiLowercased(kind))) name = withSuffix(name, " " + kind);
}

/// "CPU" is a temperature and a current on some boards.
void tellKindsApart(const std::vector<NamedChannel>& channels) {
    for (const auto& [name, group] : groupedByName(channels)) {
        const bool isOneKind = std::ranges::all_of(
            group, [&](const NamedChannel& channel) { return channel.kind == group.front().kind; });
        if (!isOneKind) std::ranges::for_each(group, appendKind);
    }
}

/// The first free name: with a number, unless the name ends in one; with the chip; with both.
std::string freeName(const SensorName& reading, int number, const std::set<std::string>& taken) {
    const std::string& name = reading.name;
    std::string candidate = withSuffix(name, " " + std::to_string(number));
    if (!isDecimalDigit(name.back()) && !taken.contains(candidate)) return candidate;
    const std::string chip = chipSuffix(reading);
    candidate = withSuffix(name, chip);
    for (int count = 2; taken.contains(candidate); ++count) {
        candidate = withSuffix(name, std::string(chip).append(" ").append(std::to_string(count)));
    }
    return candidate;
}

void makeUnique(const std::vector<NamedChannel>& channels) {
    tellKindsApart(channels);
    const auto groups = groupedByName(channels);
    std::set<std::string> taken;
    for (const auto& [name, group] : groups) taken.insert(name);
    for (const auto& [name, group] : groups) {
        for (std::size_t index = 1; index < group.size(); ++index) {
            SensorName& reading = *group[index].reading;
            reading.name = freeName(reading, static_cast<int>(index) + 1, taken);
            taken.insert(reading.name);
        }
    }
}

SensorName readingOf(const NamedDevice& device, const SensorChannel& channel) {
    SensorName reading;
    reading.key = std::string(device.keyStart).append("/").append(keyText(featureOf(channel)));
    reading.name = speakingName(nameOf(device, channel), channel.kind);
    reading.unit = unitOf(channel.kind);
    reading.type = device.type;
    return reading;
}

std::string supplyType(const SensorChip& supply) {
    std::string type = supply.name.substr(0, supply.name.find(':'));
    const bool isUsb = type == "charger" && fitsPattern("ucsi*|tcpm*|*usb*", supply.sensorsName);
    return isUsb ? "usb" : type;
}

} // namespace

std::string typeOf(const SensorChip& chip) {
    if (isSupply(chip)) return supplyType(chip);
    const std::string type = cleanedText(chip.name);
    return type.empty() ? "hwmon" : type;
}

std::vector<std::vector<std::optional<SensorName>>> sensorNames(const std::vector<SensorChip>& chips) {
    std::vector<std::vector<std::optional<SensorName>>> names;
    for (const SensorChip& chip : chips) names.emplace_back(chip.channels.size());
    std::vector<NamedChannel> readings;
    for (const NamedDevice& device : devicesIn(chips)) {
        auto& ofChip = names[static_cast<std::size_t>(device.chip - chips.data())];
        for (std::size_t index = 0; index < ofChip.size(); ++index) {
            const SensorChannel& channel = device.chip->channels[index];
            if (!isMeasured(channel) || isRepetition(*device.chip, channel.kind, chips)) continue;
            ofChip[index] = readingOf(device, channel);
            readings.push_back({&*ofChip[index], channel.kind});
        }
    }
    makeUnique(readings);
    for (const NamedChannel& reading : readings) {
        SensorName& sensor = *reading.reading;
        sensor.category = categoryOf(sensor.type, reading.kind, sensor.name);
    }
    return names;
}

} // namespace kelvinbar
