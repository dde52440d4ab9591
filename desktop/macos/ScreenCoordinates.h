#pragma once

#include "shell/Geometry.h"

namespace kelvinbar {

/// A place that the system gives, with the origin at the bottom left corner of the main screen, which is
/// `mainScreenHeight` points high, and y growing upwards; the result has its origin at that screen's top left
/// corner and y growing downwards.
inline Rect fromSystemCoordinates(const Rect& place, double mainScreenHeight) {
    return {place.x, mainScreenHeight - (place.y + place.height), place.width, place.height};
}

} // namespace kelvinbar
