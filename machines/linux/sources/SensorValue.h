#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <string_view>

namespace kelvinbar {

/// The possible values of a sensor, in the unit of its kind. Both ends are included.
struct ValueRange {
    double lowest = 0;
    double highest = 0;

    [[nodiscard]] bool contains(double value) const { return value >= lowest && value <= highest; }
};

/// The range for a kind of channel on a device of `type` (as in SensorName). Excludes the codes that chips
/// return when no sensor is connected (-128 °C, 127.5 °C, 65535 RPM).
ValueRange possibleRange(SensorKind kind, std::string_view type);

} // namespace kelvinbar
