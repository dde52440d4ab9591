#pragma once

#include <string_view>

/// The notifications by which the store tells the shell that something it shows must change.
namespace kelvinbar {

/// Object: the new sampling rate, in its stored form.
inline constexpr std::string_view kelvinbarSamplingRateChanged = "KelvinbarSamplingRateChanged";

/// User info: "title" and "tooltip", texts.
inline constexpr std::string_view kelvinbarMenuBarReadingChanged = "KelvinbarMenuBarReadingChanged";

/// User info: "mode", the stored form of the display mode; "visibleReadings", a whole number.
inline constexpr std::string_view kelvinbarDisplayModeChanged = "KelvinbarDisplayModeChanged";

/// User info: "width" and "height" in points, doubles.
inline constexpr std::string_view kelvinbarManualSizeChanged = "KelvinbarManualSizeChanged";

} // namespace kelvinbar
