#pragma once

#include "base/NotificationCenter.h"
#include "catalogue/Settings.h"

#include <cstddef>
#include <optional>
#include <string>

/// The notifications by which the store tells the shell that something it shows has changed.
namespace kelvinbar {

struct MenuBarReadingChange {
    std::optional<std::string> title;   ///< absent: ask the store
    std::optional<std::string> toolTip; ///< absent: ask the store

    friend bool operator==(const MenuBarReadingChange&, const MenuBarReadingChange&) = default;
};

struct DisplayModeChange {
    SMCWindowDisplayMode mode = SMCWindowDisplayMode::fixed;
    std::size_t visibleReadings = 0;

    friend bool operator==(const DisplayModeChange&, const DisplayModeChange&) = default;
};

struct ManualSizeChange {
    double width = 0;  ///< points
    double height = 0; ///< points

    friend bool operator==(const ManualSizeChange&, const ManualSizeChange&) = default;
};

/// Carries the new rate.
inline constexpr NotificationName<SMCSamplingRate> kelvinbarSamplingRateChanged{
    "KelvinbarSamplingRateChanged"};

inline constexpr NotificationName<MenuBarReadingChange> kelvinbarMenuBarReadingChanged{
    "KelvinbarMenuBarReadingChanged"};

inline constexpr NotificationName<DisplayModeChange> kelvinbarDisplayModeChanged{
    "KelvinbarDisplayModeChanged"};

inline constexpr NotificationName<ManualSizeChange> kelvinbarManualSizeChanged{"KelvinbarManualSizeChanged"};

} // namespace kelvinbar
