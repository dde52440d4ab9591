#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <map>
#include <optional>
#include <string>

namespace kelvinbar {

/// A text that identifies the device and channel behind a key that may change after a restart, because it
/// contains a number that the kernel counts up: that of a bus, or one in the chip's name. The text has no
/// such numbers. Nothing for a chip whose key lasts, and for one without a device path.
std::optional<std::string> sensorPlace(const SensorChip& chip, const SensorChannel& channel);

/// Numbers places that several keys share ("…#2"), in the natural order of the keys. Adapters of one bus
/// controller and radios of one card have equal places, but always appear in the same order.
void makeUnique(std::map<std::string, std::string>& placesByKey);

} // namespace kelvinbar
