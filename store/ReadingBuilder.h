#pragma once

#include "catalogue/SMCReading.h"
#include "sensors/RawReading.h"

#include <optional>
#include <vector>

/// From what sources return to readings. Pure functions; any thread.
namespace kelvinbar {

/// The results with a usable key, the last of each key, in ascending code-unit order of the keys. A registry
/// fan only fills in a key for which no candidate has a finite number.
std::vector<RawReading> mergedResults(std::vector<RawReading> candidates,
                                      std::vector<RawReading> registryFans);

/// The reading made of `result`, with the catalogue's name, category and unit where the result has none.
/// Nothing for a key of four characters that the catalogue does not know, and for any other key whose result
/// does not bring all three.
std::optional<SMCReading> buildReading(RawReading result);

} // namespace kelvinbar
