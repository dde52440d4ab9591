#pragma once

#include "catalogue/SMCReading.h"
#include "catalogue/Settings.h"
#include "shell/Geometry.h"
#include "store/Preferences.h"

#include <vector>

namespace kelvinbar {

/// The panel as it is made, and the least that it shrinks to, in points.
inline constexpr Size fixedPopoverSize{standardPopoverSize.width, standardPopoverSize.height};
inline constexpr Size minimumPopoverSize{420, minimumPopoverHeight};

/// The height of the strip as which it opens.
inline constexpr double openingPopoverHeight = 54;

/// What the size of the panel follows.
struct PopoverSizing {
    Rect visibleFrame; ///< of the screen that the panel opens on; empty without a screen
    SMCWindowDisplayMode displayMode = SMCWindowDisplayMode::fixed;
    double manualPopoverHeight = 0; ///< points
    const std::vector<SMCReading>& readings;
    const KeySet& hiddenKeys;
};

/// The panel's size in points: the user's height, or in dynamic mode the height that the visible readings
/// need where that is more; never higher than the screen allows nor lower than 560, 420 to 462 wide.
Size targetPopoverSize(const PopoverSizing& sizing);

} // namespace kelvinbar
