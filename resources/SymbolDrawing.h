#pragma once

namespace kelvinbar {

/// The width and height of every drawing in `symbols/`, in its own units.
inline constexpr double symbolSide = 24;

} // namespace kelvinbar
