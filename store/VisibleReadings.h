#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"

namespace kelvinbar {

/// Whether the panel shows and counts the reading: it has a displayable value and the user has not hidden it.
/// Any thread.
inline bool isVisibleReading(const SMCReading& reading, const KeySet& hiddenKeys) {
    return reading.hasDisplayableValue() && !hiddenKeys.contains(reading.key);
}

} // namespace kelvinbar
