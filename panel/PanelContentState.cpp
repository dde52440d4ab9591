#include "panel/PanelContentState.h"

#include <algorithm>

namespace kelvinbar {

PanelContentState contentState(bool isLoading, bool smcAvailable, std::size_t visibleReadingCount,
                               std::size_t sectionCount) {
    if (isLoading && visibleReadingCount == 0) return PanelContentState::scanning;
    if (!smcAvailable) return PanelContentState::unavailable;
    return sectionCount > 0 ? PanelContentState::sections : PanelContentState::nothingFound;
}

bool areSystemFacts(const std::vector<SMCReading>& readings) {
    return !readings.empty() && std::ranges::all_of(readings, [](const SMCReading& reading) {
        return reading.type == nativeType;
    });
}

} // namespace kelvinbar
