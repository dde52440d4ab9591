#pragma once

/// The screens of the panel's tests, in a platform without a display (screens.json).
namespace kelvinbar::screens {

inline constexpr const char* platform = "offscreen:configfile=" KELVINBAR_SCREENS;

/// Numbers of screens. On the first, which is the primary one, text and pixels have their usual size.
inline constexpr int usual = 0;
inline constexpr int textTwiceAsLarge = 1;
inline constexpr int anotherUsual = 2;

} // namespace kelvinbar::screens
