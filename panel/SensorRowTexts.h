#pragma once

#include "catalogue/SMCReading.h"
#include "panel/PanelColor.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The reading's name without the words that every reading of its kind has; its key where it has no name.
std::string rowName(const SMCReading& reading);

/// The kind of the reading and its unit.
std::string metadataLine(const SMCReading& reading);

/// The value with its unit, as short as it stays legible.
std::string rowValue(const SMCReading& reading);

/// What a double-click on the row does.
std::string_view rowToolTip(bool isMenuBarSelected);

/// The gradient behind a row, from its top left to its bottom right corner.
std::vector<PanelColor> rowBackgroundColors(bool isMenuBarSelected, Accent accent);

} // namespace kelvinbar
