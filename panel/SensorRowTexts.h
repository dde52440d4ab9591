#pragma once

#include "catalogue/SMCReading.h"
#include "panel/PanelColor.h"

#include <string>
#include <string_view>
#include <vector>

/// The texts and colours of a row. Pure functions without Qt, tested as text.
namespace kelvinbar {

/// The reading's name, without words that all readings of its kind have in common. The key if there is no
/// name.
std::string rowName(const SMCReading& reading);

/// The second line: kind and unit of the reading.
std::string metadataLine(const SMCReading& reading);

/// The value with its unit, as short as it stays legible.
std::string rowValue(const SMCReading& reading);

/// The same for another value of the reading, in its unit.
std::string rowValue(const SMCReading& reading, double value);

/// The shape of the longest number, with 0 for every digit: as wide as the column of values, and the same as
/// long as no number gets longer. Empty where there is no column: without numbers, and with several units,
/// which cannot stand below each other.
std::string longestValueShape(const std::vector<const SMCReading*>& readings);

/// The name as it was read; the key if there is no name.
std::string_view fullName(const SMCReading& reading);

/// Name and value, separated by a tab, for the clipboard.
std::string clipboardLine(const SMCReading& reading);

/// The gradient behind a row, from the top left to the bottom right corner.
std::vector<PanelColor> rowBackgroundColors(bool isMenuBarSelected, Accent accent);

} // namespace kelvinbar
