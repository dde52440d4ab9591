#pragma once

#include <cstdint>

namespace kelvinbar {

/// A colour in sRGB, blended over what is below it. The panel's own type, so that colours can be chosen
/// without Qt.
struct PanelColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    double opacity = 1; ///< 0 to 1

    friend bool operator==(const PanelColor&, const PanelColor&) = default;
};

inline constexpr PanelColor white{255, 255, 255, 1};
inline constexpr PanelColor black{0, 0, 0, 1};

constexpr PanelColor withOpacity(PanelColor color, double opacity) {
    color.opacity = opacity;
    return color;
}

/// The named colours of the platform's palette, one for each section and control.
enum class Accent { cyan, purple, pink, grey, mint, orange, yellow, red };

/// Marks a pinned row. Unlike any accent, so that it is not taken for the colour of a section.
inline constexpr PanelColor pinRed{255, 69, 58, 1};

/// The variant of the accent for a dark background. No two look alike, nor like `pinRed`.
constexpr PanelColor shade(Accent accent) {
    switch (accent) {
    case Accent::cyan:
        return {100, 210, 255, 1};
    case Accent::purple:
        return {191, 90, 242, 1};
    case Accent::pink:
        return {255, 110, 190, 1};
    case Accent::grey:
        return {152, 152, 157, 1};
    case Accent::mint:
        return {99, 230, 226, 1};
    case Accent::orange:
        return {255, 159, 10, 1};
    case Accent::yellow:
        return {255, 214, 10, 1};
    case Accent::red:
        return {255, 128, 92, 1};
    }
    return white;
}

/// A mix of white and a colour, which has this share of it, 0 to 1.
constexpr PanelColor lightened(PanelColor color, double share) {
    const auto mixed = [share](std::uint8_t channel) {
        return static_cast<std::uint8_t>(255.5 - share * (255 - channel)); // rounded
    };
    return {mixed(color.red), mixed(color.green), mixed(color.blue), color.opacity};
}

/// Accents as inks on a tint of themselves: legibility first. For values and counts, and for symbols.
inline constexpr double accentInText = 0.35;
inline constexpr double accentInSymbols = 0.58;

} // namespace kelvinbar
