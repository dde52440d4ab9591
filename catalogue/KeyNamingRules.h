#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <optional>
#include <string>
#include <string_view>

/// Names for keys that the table does not hold. Sensor drivers follow conventions: a family letter, a
/// component letter, an index digit and a letter for the kind of place. Pure functions; any thread.
namespace kelvinbar {

/// The entry that the first applicable pattern gives `key`; the table is not asked.
std::optional<SMCKeyDefinition> definitionByPattern(std::string_view key);

/// Names within one family; each gives the key itself where no rule matches.
std::string thermalName(std::string_view key);
std::string storageName(std::string_view key);
std::string powerName(std::string_view key);
std::string voltageName(std::string_view key);
std::string currentName(std::string_view key);
std::string batteryName(std::string_view key);

/// "V", "A", "W", "mAh" or empty, by the key's suffix.
std::string_view batteryUnit(std::string_view key);

} // namespace kelvinbar
