#pragma once

#include "catalogue/SMCReading.h"
#include "sensors/RawReading.h"

#include <optional>
#include <vector>

/// Turns the results of sources into readings. Pure functions; any thread.
namespace kelvinbar {

/// The results with a usable key in ascending order of their code units. Of several results for one key the
/// last is used, but a registry fan only if no candidate has a finite number.
std::vector<RawReading> mergedResults(std::vector<RawReading> candidates,
                                      std::vector<RawReading> registryFans);

/// The reading for `result`. The catalogue supplies the name, category and unit that the result lacks. No
/// value for a four-character key that is not in the catalogue, nor for any other key whose result lacks one
/// of the three.
std::optional<SMCReading> buildReading(RawReading result);

} // namespace kelvinbar
