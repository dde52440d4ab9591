#pragma once

#include "shell/Geometry.h"

namespace kelvinbar {

/// A screen: all of it, and the part that no bar or dock covers.
struct ScreenFrames {
    Rect frame;
    Rect visibleFrame;

    friend bool operator==(const ScreenFrames&, const ScreenFrames&) = default;
};

/// Where a panel of `size` goes that drops down from `anchor`: below a bar at the top of the screen, above
/// one at the bottom, beside one at a side, in line with the anchor and inside the visible frame. A panel
/// that does not fit keeps its top left corner visible.
Rect placedPopover(const Rect& anchor, Size size, const ScreenFrames& screen);

} // namespace kelvinbar
