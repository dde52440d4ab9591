#pragma once

#include "catalogue/SMCReading.h"
#include "smc/SMCValueDecoding.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// From what the machine answered to readings. Pure functions; any thread.
namespace kelvinbar {

/// Results in ascending code-unit order of their keys, so that no outcome depends on a hash table.
using ResultMap = std::map<std::string, SMCKeyResult, std::less<>>;

/// All results whose key has four characters, the last of each key. A registry fan only fills in a key that
/// the controller did not answer with a real number.
ResultMap mergedResults(std::vector<SMCKeyResult> candidates, std::vector<SMCKeyResult> registryFans);

/// The reading that `result` gives: what it tells itself, and the catalogue's word for what is missing or of
/// the wrong type. Nothing for a result without a key and for a key that the catalogue cannot name.
std::optional<SMCReading> buildReading(const SMCKeyResult& result);

} // namespace kelvinbar
