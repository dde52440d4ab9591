#pragma once

#include "catalogue/SMCReading.h"
#include "smc/SMCValueDecoding.h"

#include <optional>
#include <vector>

/// From what the machine answered to readings. Pure functions; any thread.
namespace kelvinbar {

/// All results whose key has four characters, the last of each key, in ascending code-unit order of the keys.
/// A registry fan only fills in a key that the controller did not answer with a real number.
std::vector<SMCKeyResult> mergedResults(std::vector<SMCKeyResult> candidates,
                                        std::vector<SMCKeyResult> registryFans);

/// The reading that `result` gives: what it tells itself, and the catalogue's word for what is missing or of
/// the wrong type. Nothing for a result without a key and for a key that the catalogue cannot name.
std::optional<SMCReading> buildReading(const SMCKeyResult& result);

} // namespace kelvinbar
