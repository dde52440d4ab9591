#pragma once

#include "desktop/macos/ScreenCoordinates.h"

#import <AppKit/AppKit.h>

namespace kelvinbar {

/// The origin of system coordinates is a corner of the first screen.
inline double mainScreenHeight() { return NSScreen.screens.firstObject.frame.size.height; }

/// Converts from system coordinates. Main thread.
inline Rect placeOnScreen(NSRect place) {
    return fromSystemCoordinates(Rect{place.origin.x, place.origin.y, place.size.width, place.size.height},
                                 mainScreenHeight());
}

/// The same for a point.
inline Point placeOnScreen(NSPoint place) {
    return fromSystemCoordinates(Point{place.x, place.y}, mainScreenHeight());
}

} // namespace kelvinbar
