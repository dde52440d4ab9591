#pragma once

#include "catalogue/SMCReading.h"

#include <cstddef>
#include <vector>

namespace kelvinbar {

/// What the middle of the panel shows:
/// - scanning: the first refresh is running
/// - sections: the readings
/// - nothingFound: the machine can be read, but there is no reading to show
/// - unavailable: the machine cannot be read
enum class PanelContentState { scanning, sections, nothingFound, unavailable };

/// The state for the store's fields. During a refresh the readings stay, so `scanning` requires that there
/// are none.
PanelContentState contentState(bool isLoading, bool smcAvailable, std::size_t visibleReadingCount,
                               std::size_t sectionCount);

/// Whether there are readings, and all are what the operating system knows without a sensor.
bool areSystemFacts(const std::vector<SMCReading>& readings);

} // namespace kelvinbar
