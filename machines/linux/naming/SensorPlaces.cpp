#include "machines/linux/naming/SensorPlaces.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelvinbar {

namespace {

/// Buses whose numbers depend on the order in which drivers are loaded and devices are plugged in.
constexpr std::array<std::string_view, 5> countedBuses{"-i2c-", "-hid-", "-scsi-", "-mdio-", "-virtual-"};

bool hasLastingKey(const SensorChip& chip) {
    const auto isOn = [&](std::string_view bus) { return contains(chip.sensorsName, bus); };
    return chip.name == chip.stableName && std::ranges::none_of(countedBuses, isOn);
}

} // namespace

std::optional<std::string> sensorPlace(const SensorChip& chip, const SensorChannel& channel) {
    if (chip.device.empty() || hasLastingKey(chip)) return std::nullopt;
    return chip.device + "/" + chip.stableName + "/" + channel.feature;
}

} // namespace kelvinbar
