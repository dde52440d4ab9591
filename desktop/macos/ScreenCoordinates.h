#pragma once

#include "shell/Geometry.h"

namespace kelvinbar {

/// Converts a rectangle in points from the system's coordinates, with the origin at the bottom left corner of
/// the main screen and y growing upwards, to ours, with the origin at its top left corner and y growing
/// downwards.
inline Rect fromSystemCoordinates(const Rect& place, double mainScreenHeight) {
    return {place.x, mainScreenHeight - (place.y + place.height), place.width, place.height};
}

/// The same for a point.
inline Point fromSystemCoordinates(Point place, double mainScreenHeight) {
    return {place.x, mainScreenHeight - place.y};
}

} // namespace kelvinbar
