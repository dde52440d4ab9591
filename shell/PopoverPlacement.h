#pragma once

#include "shell/Geometry.h"

namespace kelvinbar {

/// A whole screen, and the part of it that no bar or dock covers.
struct ScreenFrames {
    Rect frame;
    Rect visibleFrame;

    friend bool operator==(const ScreenFrames&, const ScreenFrames&) = default;
};

/// The anchor for an item whose place is unknown: the corner of the visible frame where status items usually
/// are in a bar at the edge that reserves most space. Without a bar, the top right corner. Pure function; any
/// thread.
Rect cornerOfBar(const ScreenFrames& screen);

/// The frame of a panel of `size` that drops down from `anchor`, an item in a bar. The panel is next to the
/// bar, whichever side of the screen that is at, and centred on the anchor as far as the visible frame
/// allows. If it does not fit, its top left corner stays visible. Pure function; any thread.
Rect placedPopover(const Rect& anchor, Size size, const ScreenFrames& screen);

} // namespace kelvinbar
