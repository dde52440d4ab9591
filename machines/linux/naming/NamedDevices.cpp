#include "machines/linux/naming/NamedDevices.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/SupplyMonitors.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

namespace kelvinbar {

namespace {

using enum SensorKind;

std::string supplyType(const SensorChip& supply) {
    std::string type = supply.name.substr(0, supply.name.find(':'));
    const bool isUsb = type == "charger" && fitsPattern("ucsi*|tcpm*|*usb*", supply.sensorsName);
    return isUsb ? "usb" : type;
}

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

// Order

std::string contentOf(const SensorChip& chip) {
    std::string content;
    for (const SensorChannel& channel : chip.channels) {
        content.append(featureOf(channel)).append("=").append(channel.label).append("\n");
    }
    return content;
}

/// Returns the path up to the next slash and removes both from `path`.
std::string_view takeFolder(std::string_view& path) {
    const std::string_view folder = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(folder.size() + 1, path.size()));
    return folder;
}

/// "0000:0a:00.0"
bool isAddress(std::string_view folder) { return contains(folder, ":"); }

/// Addresses come first. They are hexadecimal numbers of fixed width and compare as text; other folders are
/// in natural order.
bool isEarlierFolder(std::string_view mine, std::string_view other) {
    if (isAddress(mine) != isAddress(other)) return isAddress(mine);
    if (isAddress(mine)) return mine < other;
    if (comesBeforeNaturally(mine, other)) return true;
    return !comesBeforeNaturally(other, mine) && mine < other;
}

/// Compares folder by folder.
bool isEarlierPath(std::string_view left, std::string_view right) {
    while (!left.empty() && !right.empty()) {
        const std::string_view mine = takeFolder(left);
        const std::string_view other = takeFolder(right);
        if (mine != other) return isEarlierFolder(mine, other);
    }
    return left.empty() && !right.empty();
}

/// A chip with what its place among others depends on.
struct OrderedChip {
    explicit OrderedChip(const SensorChip& ownChip) : chip(&ownChip), content(contentOf(ownChip)) {}

    const SensorChip* chip;
    std::string content;
};

bool isEarlier(const OrderedChip& left, const OrderedChip& right) {
    if (isEarlierPath(left.chip->device, right.chip->device)) return true;
    if (isEarlierPath(right.chip->device, left.chip->device)) return false;
    const auto identity = [](const OrderedChip& each) {
        return std::tie(each.chip->device, each.chip->sensorsName, each.content, each.chip->folder);
    };
    return identity(left) < identity(right);
}

// Devices

/// The words for a chip that no row matches: its driver's name.
std::string driverWords(std::string_view type) {
    constexpr std::string_view zone = "_thermal";
    if (type.ends_with(zone) && type.size() > zone.size()) type.remove_suffix(zone.size());
    const std::string words = cleanedText(replacedAll(type, "_", " "));
    return words.empty() || words == "hwmon" ? "Sensor" : words;
}

/// The slot of a memory module: its position among the eight addresses that the bus reserves for modules.
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
    device.family = device.type;
    device.row = deviceRowOf(device.family);
    // A chip that no row matches is identified by its network interface, if it has one.
    if (device.row == nullptr && !chip.network.empty()) {
        device.family = chip.network.starts_with("w") ? "wlan0" : "eth0";
        device.row = deviceRowOf(device.family);
    }
    for (const SensorChannel& channel : chip.channels) ++device.channelCounts[channel.kind];
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

/// The socket or slot that the device reports.
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

/// Numbers the devices of each family. A supply and its hwmon chip count as one device.
class DeviceCounter {
  public:
    explicit DeviceCounter(const std::vector<NamedDevice>& devices) {
        for (const NamedDevice& device : devices) {
            if (isSupply(*device.chip)) supplies_.insert(monitorNameOf(*device.chip));
        }
        for (const NamedDevice& device : devices) families_[familyOf(device)].insert(identityOf(device));
    }

    [[nodiscard]] bool isAlone(const NamedDevice& device) const {
        return families_.at(familyOf(device)).size() == 1;
    }

    /// The device's number, from 1, among those with the same detail, in the order of the calls.
    int numberOf(const NamedDevice& device) {
        auto& seen = seen_[{familyOf(device), device.detail}];
        const auto next = static_cast<int>(seen.size()) + 1;
        return seen.try_emplace(identityOf(device), next).first->second;
    }

  private:
    static std::string familyOf(const NamedDevice& device) {
        return device.row == nullptr ? device.type : std::string(device.row->chips);
    }

    [[nodiscard]] std::string identityOf(const NamedDevice& device) const {
        if (isSupply(*device.chip)) return monitorNameOf(*device.chip);
        return supplies_.contains(device.type) ? device.type : device.keyStart;
    }

    std::set<std::string> supplies_;
    std::map<std::string, std::set<std::string>> families_;
    /// By family and detail, the numbers of the devices.
    std::map<std::pair<std::string, std::string>, std::map<std::string, int>> seen_;
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

} // namespace

std::string typeOf(const SensorChip& chip) {
    if (isSupply(chip)) return supplyType(chip);
    const std::string type = cleanedText(chip.name);
    return type.empty() ? "hwmon" : type;
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

std::string keyText(std::string_view text) {
    std::string key;
    while (!text.empty()) {
        const std::string_view character = firstCharacters(text, 1);
        const bool isControl = static_cast<unsigned char>(character.front()) < ' ' || character == "\x7F";
        key.append(isControl || !isValidUtf8(character) ? "_" : character);
        text.remove_prefix(character.size());
    }
    return key;
}

std::vector<NamedDevice> namedDevices(const std::vector<SensorChip>& chips) {
    std::vector<OrderedChip> order;
    for (const SensorChip& chip : chips) {
        const bool hasReadings = std::ranges::any_of(chip.channels, isMeasured);
        if (hasReadings && !isApplesController(chip)) order.emplace_back(chip);
    }
    std::ranges::stable_sort(order, isEarlier);
    std::vector<NamedDevice> devices;
    devices.reserve(order.size());
    for (const OrderedChip& each : order) devices.push_back(deviceOf(*each.chip));
    countKeys(devices);
    countDevices(devices);
    return devices;
}

} // namespace kelvinbar
