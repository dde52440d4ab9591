#pragma once

#include "catalogue/SMCReading.h"
#include "store/LoadPass.h"

namespace kelvinbar {

/// Whether the panel counts the reading: it has something to show, and the user has not hidden its key.
inline bool isVisibleReading(const SMCReading& reading, const KeySet& hiddenKeys) {
    return reading.hasDisplayableValue() && !hiddenKeys.contains(reading.key);
}

} // namespace kelvinbar
