#include "machines/linux/naming/SensorPlaces.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

/// Buses whose numbers depend on the order in which drivers are loaded and devices are plugged in.
constexpr std::array<std::string_view, 5> countedBuses{"-i2c-", "-hid-", "-scsi-", "-mdio-", "-virtual-"};

/// Supplies of the machine itself. Their serial numbers need not be stored: the kernel's names last.
bool isOwnSupply(const SensorChip& chip) {
    return chip.name.starts_with("battery:") || chip.name.starts_with("charger:");
}

bool hasLastingKey(const SensorChip& chip) {
    if (isOwnSupply(chip)) return true;
    const auto isOn = [&](std::string_view bus) { return contains(chip.sensorsName, bus); };
    return chip.name == chip.stableName && std::ranges::none_of(countedBuses, isOn);
}

/// "i2c-7" and "host2" without the number; nothing for other folders.
std::optional<std::string_view> withoutNumberAtEnd(std::string_view folder) {
    for (const std::string_view name : {"i2c-", "host"}) {
        if (folder.starts_with(name) && isDecimalDigits(folder.substr(name.size()))) return name;
    }
    return std::nullopt;
}

/// "7-0050", "target2:0:0" and "2:0:0:0" without the number of their bus; nothing for other folders.
std::optional<std::string_view> withoutNumberOfBus(std::string_view folder) {
    constexpr std::string_view target = "target";
    std::string_view number = folder;
    if (folder.starts_with(target)) number.remove_prefix(target.size());
    const std::size_t end = number.find_first_of("-:");
    if (end == std::string_view::npos || !isDecimalDigits(number.substr(0, end))) return std::nullopt;
    const std::string_view rest = number.substr(end);
    const bool isOnBus = fitsPattern(number.size() < folder.size() ? ":*:*" : "-0???|-a???|:*:*:*", rest);
    return isOnBus ? std::optional(rest) : std::nullopt;
}

/// "0003:1E71:2007.0005" without the number at the end, which differs each time the device is connected.
std::string_view withoutNumberOfConnection(std::string_view folder) {
    return fitsPattern("????:????:????.????", folder) ? folder.substr(0, folder.rfind('.')) : folder;
}

std::string_view lastingName(std::string_view folder) {
    if (const auto name = withoutNumberAtEnd(folder)) return *name;
    if (const auto name = withoutNumberOfBus(folder)) return *name;
    return withoutNumberOfConnection(folder);
}

/// A device path without numbers that the kernel counts up.
std::string lastingPath(std::string_view device) {
    std::string path;
    while (!device.empty()) {
        const std::string_view folder = device.substr(0, device.find('/'));
        path.append(lastingName(folder)).append("/");
        device.remove_prefix(std::min(folder.size() + 1, device.size()));
    }
    return path;
}

} // namespace

std::optional<std::string> sensorPlace(const SensorChip& chip, const SensorChannel& channel) {
    // The place is stored as text. A serial number may be anything.
    if (chip.device.empty() || !isValidUtf8(chip.device) || hasLastingKey(chip)) return std::nullopt;
    return lastingPath(chip.device).append(chip.stableName).append("/").append(channel.feature);
}

void makeUnique(std::map<std::string, std::string>& placesByKey) {
    std::vector<std::pair<std::string_view, std::string*>> order;
    order.reserve(placesByKey.size());
    for (auto& [key, place] : placesByKey) order.emplace_back(key, &place);
    std::ranges::stable_sort(order, [](const auto& left, const auto& right) {
        return comesBeforeNaturally(left.first, right.first);
    });
    std::map<std::string, int> counts;
    for (const auto& [key, place] : order) {
        const int count = ++counts[*place];
        if (count > 1) place->append("#").append(std::to_string(count));
    }
}

} // namespace kelvinbar
