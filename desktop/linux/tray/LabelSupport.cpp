#include "desktop/linux/tray/LabelSupport.h"

#include "desktop/linux/session/DesktopNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelvinbar {

namespace {

/// Watchers of trays that display labels, with the names that the kernel cuts off at 15 characters.
constexpr std::array<std::string_view, 10> labellingWatchers{
    "gnome-shell",     // with the AppIndicator extension
    "mate-panel",      // the notification area in the panel's process
    "notification-ar", // notification-area-applet, the same in a process of its own
    "mate-indicator-", // mate-indicator-applet
    "ayatana-indicat", // ayatana-indicator-application-service
    "indicator-appli", // indicator-application-service
    "unity-panel-ser", // unity-panel-service
    "io.elementary.w", // io.elementary.wingpanel
    "wingpanel",       "sfwbar",
};

/// Desktops whose trays usually display labels.
constexpr std::array<std::string_view, 4> labellingDesktops{"gnome", "unity", "mate", "pantheon"};

bool isLabellingDesktop(const std::string& desktopNames) {
    // Budgie calls itself "Budgie:GNOME", for its programs, but has a tray of its own.
    if (hasDesktopName(desktopNames, "budgie")) return false;
    return std::ranges::any_of(
        labellingDesktops, [&](std::string_view desktop) { return hasDesktopName(desktopNames, desktop); });
}

} // namespace

bool showsLabels(const std::string& watcherProcess, const std::string& desktopNames) {
    if (watcherProcess.empty()) return isLabellingDesktop(desktopNames);
    return std::ranges::find(labellingWatchers, watcherProcess) != labellingWatchers.end();
}

} // namespace kelvinbar
