#pragma once

#include "base/Value.h"
#include "smc/SMCParamBlock.h"

#include <cstdint>
#include <string_view>

namespace kelvinbar {

/// What one key read or one registry fan gave: "key", "type", "value", "raw", "status" (texts), "size" (whole
/// number), "numericValue" (double, only for numeric types); a registry fan also has "name", "category" and
/// "unit" (texts). Empty when nothing usable was read.
using SMCKeyResult = Dictionary;

/// Whether a value of that many bytes can be carried by a parameter block.
inline bool isReadableSize(std::uint32_t size) { return size >= 1 && size <= 32; }

/// Decodes a filled block by its data type. Empty when the key is not printable or the size is not 1 to 32.
SMCKeyResult dictionaryForKey(std::string_view key, const SMCParamBlock& block);

} // namespace kelvinbar
