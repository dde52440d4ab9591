#pragma once

#include "catalogue/SMCReading.h"

#include <cstddef>
#include <string>
#include <vector>

/// The texts of the menu bar, derived from the pinned readings. Pure functions; any thread.
namespace kelvinbar {

inline constexpr std::size_t maximumPinnedKeys = 6;

/// The first six distinct, non-blank elements of `keys`, trimmed.
std::vector<std::string> sanitizedPinnedKeys(const std::vector<std::string>& keys);

/// The display value in the short form of the menu bar: "48°", "1200rpm"; at most 12 characters.
std::string compactMenuBarValue(const SMCReading& reading);

/// The short values with a blank in front of the first; empty without readings.
std::string menuBarTitleText(const std::vector<SMCReading>& pinned);

/// Key, name and value of each reading, or how to pin one.
std::string menuBarToolTipText(const std::vector<SMCReading>& pinned);

} // namespace kelvinbar
