#pragma once

#include "platform/emulated/SMCKeySource.h"
#include "platform/linux/SensorChannel.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// Whether a channel of that kind can have the value, given in the kind's unit. Full-scale codes that chips
/// give for a sensor that is not there (-128 °C, 65535 RPM) are values that it cannot have.
bool isPossibleValue(SensorKind kind, double value);

/// Bytes that a value of the data type has in a controller.
std::uint32_t sizeOfType(std::string_view type);

/// The bytes of a number in a data type of controllers; nothing when the type cannot hold it.
std::optional<SMCBytes> encodedNumber(std::string_view type, double value);

/// The bytes of a text, cut to what `ch8*` keys hold here.
SMCBytes encodedText(std::string_view text);

} // namespace kelvinbar
