#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <vector>

namespace kelvinbar {

/// Builds the table of keys known by name: sorted by key in code-unit order, each key once. Where two groups
/// of rows name the same key, the earlier group wins.
std::vector<SMCKeyDefinition> makeDefinitions();

} // namespace kelvinbar
