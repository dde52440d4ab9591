#pragma once

#include "catalogue/SMCReading.h"

#include <cstddef>
#include <string>
#include <vector>

/// The texts of the status item, derived from the pinned readings. Pure functions; any thread.
namespace kelvinbar {

inline constexpr std::size_t maximumPinnedKeys = 6;

/// `keys` trimmed, without empty texts and duplicates; the first six.
std::vector<std::string> sanitizedPinnedKeys(const std::vector<std::string>& keys);

/// The display value in short form, such as "48°" or "1200rpm"; at most 12 characters.
std::string compactMenuBarValue(const SMCReading& reading);

/// The short values, with a space before the first. Empty without readings.
std::string menuBarTitleText(const std::vector<SMCReading>& pinned);

/// Key, name and value of each reading. Without readings, explains how to pin one.
std::string menuBarToolTipText(const std::vector<SMCReading>& pinned);

} // namespace kelvinbar
