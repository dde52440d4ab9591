#pragma once

#include "catalogue/SMCReading.h"

#include <vector>

namespace kelvinbar {

/// `readings` sorted by the category's title in code-unit order, then by key in natural order. Stable.
std::vector<SMCReading> sortedByCategoryAndKey(std::vector<SMCReading> readings);

/// Pointers to the elements of `readings`, sorted by key in natural order. Stable. Valid as long as
/// `readings` exists and is not changed.
std::vector<const SMCReading*> sortedByKey(const std::vector<SMCReading>& readings);

} // namespace kelvinbar
