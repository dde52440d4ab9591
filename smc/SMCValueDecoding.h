#pragma once

#include "sensors/RawReading.h"
#include "smc/SMCParamBlock.h"

#include <optional>
#include <string_view>

namespace kelvinbar {

/// Decodes a filled block by its data type. Nothing when the key is not printable or the size is not 1 to 32.
/// A type that is neither a number nor a text, too few bytes for the type, and a float that is infinite or
/// NaN become hex digits without a number. Pure; any thread.
std::optional<RawReading> dictionaryForKey(std::string_view key, const SMCParamBlock& block);

} // namespace kelvinbar
