#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"

namespace kelvinbar {

/// Whether the panel counts the reading: it has something to show, and the user has not hidden its key.
inline bool isVisibleReading(const SMCReading& reading, const KeySet& hiddenKeys) {
    return reading.hasDisplayableValue() && !hiddenKeys.contains(reading.key);
}

} // namespace kelvinbar
