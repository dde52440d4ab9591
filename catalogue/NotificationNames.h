#pragma once

#include "base/NotificationCenter.h"
#include "catalogue/Settings.h"

#include <cstddef>
#include <optional>
#include <string>

/// The notifications that the store posts when something outside the panel has to follow a change: the
/// status item, the refresh timer and the panel window. Views in the panel observe the store's fields
/// instead.
///
/// Posted and delivered on the main thread, after the store has changed. See NotificationCenter.
namespace kelvinbar {

/// What the status item displays has changed.
struct MenuBarReadingChange {
    std::optional<std::string> title;   ///< no value: read it from the store
    std::optional<std::string> toolTip; ///< no value: read it from the store

    friend bool operator==(const MenuBarReadingChange&, const MenuBarReadingChange&) = default;
};

/// The panel sizes itself in another way, or in dynamic mode has other content to fit.
struct DisplayModeChange {
    SMCWindowDisplayMode mode = SMCWindowDisplayMode::fixed;
    std::size_t visibleReadings = 0; ///< readings with a value that are not hidden

    friend bool operator==(const DisplayModeChange&, const DisplayModeChange&) = default;
};

/// The user has set the size of the panel in fixed mode.
struct ManualSizeChange {
    double width = 0;  ///< points
    double height = 0; ///< points

    friend bool operator==(const ManualSizeChange&, const ManualSizeChange&) = default;
};

/// The content is the new rate.
inline constexpr NotificationName<SMCSamplingRate> kelvinbarSamplingRateChanged{
    "KelvinbarSamplingRateChanged"};

inline constexpr NotificationName<MenuBarReadingChange> kelvinbarMenuBarReadingChanged{
    "KelvinbarMenuBarReadingChanged"};

inline constexpr NotificationName<DisplayModeChange> kelvinbarDisplayModeChanged{
    "KelvinbarDisplayModeChanged"};

inline constexpr NotificationName<ManualSizeChange> kelvinbarManualSizeChanged{"KelvinbarManualSizeChanged"};

} // namespace kelvinbar
