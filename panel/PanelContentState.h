#pragma once

#include <cstddef>

namespace kelvinbar {

/// What the middle of the panel shows.
enum class PanelContentState { scanning, sections, nothingFound, unavailable };

/// While a refresh runs, what is there stays: only a panel with nothing to show says that it is scanning.
PanelContentState contentState(bool isLoading, bool smcAvailable, std::size_t visibleReadingCount,
                               std::size_t sectionCount);

} // namespace kelvinbar
