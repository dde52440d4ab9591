#include "panel/PanelContentState.h"

namespace kelvinbar {

PanelContentState contentState(bool isLoading, bool smcAvailable, std::size_t visibleReadingCount,
                               std::size_t sectionCount) {
    if (isLoading && visibleReadingCount == 0) return PanelContentState::scanning;
    if (!smcAvailable) return PanelContentState::unavailable;
    return sectionCount > 0 ? PanelContentState::sections : PanelContentState::nothingFound;
}

} // namespace kelvinbar
