#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <string_view>

namespace kelvinbar {

/// The values that a sensor can have, in the unit of its kind.
struct ValueRange {
    double lowest = 0;
    double highest = 0;

    [[nodiscard]] bool contains(double value) const { return value >= lowest && value <= highest; }
};

/// The range of a kind of channel on a device of that type (as in SensorName). The codes that chips return
/// for a sensor that is not connected (-128 °C, 127.5 °C, 65535 RPM) are outside.
ValueRange possibleRange(SensorKind kind, std::string_view type);

} // namespace kelvinbar
