#pragma once

#include "sensors/RawReading.h"
#include "smc/SMCParamBlock.h"

#include <optional>
#include <string_view>

namespace kelvinbar {

/// Decodes the bytes of a reply by its data type. No value if the key is not printable or the size is not 1
/// to 32. The value is hex digits without a number if the type is unknown, if the reply is too short for it,
/// or if a float is infinite or NaN. Pure function; any thread.
std::optional<RawReading> dictionaryForKey(std::string_view key, const SMCParamBlock& block);

} // namespace kelvinbar
