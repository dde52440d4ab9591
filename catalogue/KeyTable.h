#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <vector>

namespace kelvinbar {

/// Builds the table of keys known by name from the rows in KnownKey.h: sorted by key in code-unit order, each
/// key once. Numbered rows become one entry for each digit in their limits. Allocates and sorts the whole
/// table on every call; SMCKeyDatabase calls it once. Any thread.
std::vector<SMCKeyDefinition> makeDefinitions();

} // namespace kelvinbar
