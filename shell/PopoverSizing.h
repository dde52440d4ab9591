#pragma once

#include "catalogue/SMCReading.h"
#include "catalogue/Settings.h"
#include "shell/Geometry.h"
#include "store/Preferences.h"

#include <vector>

namespace kelvinbar {

/// The initial and the smallest size of the panel, in points.
inline constexpr Size fixedPopoverSize{standardPopoverSize.width, standardPopoverSize.height};
inline constexpr Size minimumPopoverSize{420, minimumPopoverHeight};

/// The height at which the opening animation starts, in points.
inline constexpr double openingPopoverHeight = 54;

/// What the size of the panel depends on.
struct PopoverSizing {
    Rect visibleFrame; ///< of the screen with the panel; empty without a screen
    SMCWindowDisplayMode displayMode = SMCWindowDisplayMode::fixed;
    double manualPopoverHeight = 0; ///< points
    const std::vector<SMCReading>& readings;
    const KeySet& hiddenKeys;
};

/// The height of all visible readings, in points, by their number and that of their categories. Pure
/// function; any thread.
double dynamicPopoverHeight(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys);

/// The panel's size in points. The height is the user's, or in dynamic mode the height of all visible
/// readings if that is more. It is at least 560 and otherwise fits the screen; the width is 420 to 462. Pure
/// function; any thread.
Size targetPopoverSize(const PopoverSizing& sizing);

} // namespace kelvinbar
