#pragma once

namespace kelvinbar {

/// The side of the square that every drawing in `symbols/` fills, in the drawing's own units.
inline constexpr double symbolSide = 24;

} // namespace kelvinbar
