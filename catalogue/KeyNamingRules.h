#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <optional>
#include <string>
#include <string_view>

/// Names for keys that are not in the table. Key names follow conventions: in "TC3D", "T" means temperature,
/// "C" the processor, "3" the index and "D" the diode. The rules apply these conventions to any index and to
/// any place.
///
/// The rules know nothing of the machine: they name a key whether or not the machine has it. Their names can
/// differ from those of the table, which take precedence; use SMCKeyDatabase::hwMonitorDefinition() for
/// what to display. Pure functions; any thread.
namespace kelvinbar {

/// The definition of `key` by the first rule that applies; the table is not consulted. No value if `key` does
/// not have exactly four characters or no rule applies.
std::optional<SMCKeyDefinition> definitionByPattern(std::string_view key);

// Names within one family. Each accepts any text and returns it unchanged if it has no name for it.

std::string thermalName(std::string_view key); ///< board, chipset, radio, display and battery temperatures
std::string storageName(std::string_view key); ///< "TN", "TS" and "TH": drives, numbered by what follows
std::string powerName(std::string_view key);   ///< package and GPU power
std::string voltageName(std::string_view key);
std::string currentName(std::string_view key);
std::string batteryName(std::string_view key); ///< batteries as a group, the charger and the adapter

/// "V", "A", "W", "mAh" or an empty text, by the key or its last two characters. Does not check that `key`
/// belongs to a battery.
std::string_view batteryUnit(std::string_view key);

} // namespace kelvinbar
