#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <map>
#include <optional>
#include <string>

namespace kelvinbar {

/// The device and channel behind a key that may be another after a restart: keys with the number of a bus
/// that the kernel counts up, and chips that it numbers. The text is free of such numbers. Nothing for a chip
/// whose key lasts, and for one without a device path.
std::optional<std::string> sensorPlace(const SensorChip& chip, const SensorChannel& channel);

/// Numbers the places that several keys have ("…#2"), in the natural order of the keys: adapters of one bus
/// controller and radios of one card differ in nothing else, but always come in the same order.
void makeUnique(std::map<std::string, std::string>& placesByKey);

} // namespace kelvinbar
