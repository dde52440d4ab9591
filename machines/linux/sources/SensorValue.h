#pragma once

#include "machines/linux/applesmc/SMCKeySource.h"
#include "machines/linux/naming/SensorChannel.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// Whether a channel of that kind can have the value, given in the kind's unit. Full-scale codes that chips
/// give for a sensor that is not there (-128 °C, 65535 RPM) are values that it cannot have.
bool isPossibleValue(SensorKind kind, double value);

/// A data type of controllers.
struct SensorType {
    enum class Form : std::uint8_t { text, floating, whole };

    std::string_view name; ///< four characters
    Form form = Form::text;
    std::uint32_t size = 0; ///< in bytes
    double scale = 0;       ///< of a whole number, as all that follows
    double lowest = 0;
    double highest = 0;
};

/// The type of that name: one of numbers, or text ("ch8*") for every other name. It lives for ever.
const SensorType& sensorType(std::string_view name);

/// The bytes of a number; nothing when the type cannot hold it.
std::optional<SMCBytes> encodedNumber(const SensorType& type, double value);

/// The bytes of a text, cut to what `ch8*` keys hold here.
SMCBytes encodedText(std::string_view text);

} // namespace kelvinbar
