#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <optional>
#include <string>

namespace kelvinbar {

/// The device and channel behind a key that may be another after a restart: keys with the number of a bus
/// that the kernel counts up, and chips that it numbers. Nothing for a chip whose key lasts, and for one
/// without a device path.
std::optional<std::string> sensorPlace(const SensorChip& chip, const SensorChannel& channel);

} // namespace kelvinbar
