#pragma once

#include "panel/PanelColor.h"

#include <array>

/// What texts and marks are drawn on, as gradients; each lies over the one before it.
namespace kelvinbar::surfaces {

/// The whole panel, from the top left to the bottom right corner: dark metal, lit from the top left.
inline constexpr std::array backdrop{PanelColor{0x34, 0x38, 0x3f, 1}, PanelColor{0x21, 0x24, 0x29, 1},
                                     PanelColor{0x19, 0x1b, 0x1f, 1}, PanelColor{0x15, 0x17, 0x1a, 1}};
/// Over the upper 120 points of the panel, from top to bottom.
inline constexpr std::array sheen{withOpacity(white, 0.06), withOpacity(white, 0)};
inline constexpr std::array card{withOpacity(white, 0.075), withOpacity(white, 0.03),
                                 withOpacity(black, 0.1)};
/// Menus, tooltips and notices, from top to bottom.
inline constexpr std::array popup{PanelColor{0x3a, 0x3f, 0x47, 1}, PanelColor{0x2c, 0x30, 0x37, 1}};
inline constexpr std::array about{PanelColor{0x45, 0x4a, 0x53, 1}, PanelColor{0x2b, 0x2f, 0x36, 1},
                                  PanelColor{0x23, 0x26, 0x2b, 1}};
/// The field of a value, from top to bottom.
inline constexpr std::array chip{withOpacity(black, 0.34), withOpacity(black, 0.22)};
inline constexpr std::array button{withOpacity(white, 0.1), withOpacity(white, 0.05)};
inline constexpr std::array hoveredButton{withOpacity(white, 0.16), withOpacity(white, 0.09)};

/// How opaque the accent is, at its strongest, in the badge and the symbol's tile of a card, and in a check
/// button that is on.
inline constexpr double badgeTint = 0.16;
inline constexpr double tileTint = 0.28;
inline constexpr double checkTint = 0.24;

/// How opaque the yellow of the warning symbol is.
inline constexpr double warningTint = 0.75;

} // namespace kelvinbar::surfaces
