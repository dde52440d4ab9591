#include "desktop/linux/window/PlatformChoice.h"

#include "desktop/linux/window/x11/X11Connection.h"

namespace kelvinbar {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

/// Whether the X server of the environment accepts us.
bool xServerAnswers() { return !qEnvironmentVariableIsEmpty("DISPLAY") && connectToX11() != nullptr; }

} // namespace

QByteArray platformFor(const SessionDisplays& displays) {
    if (displays.hasLayerShell) return "wayland";
    if (displays.hasXServer) return "xcb";
    return displays.hasWayland ? "wayland" : "";
}

PlatformChoice::PlatformChoice(const std::function<bool()>& offersLayerShell)
    : isOurs_(!qEnvironmentVariableIsSet(platformVariable)) {
    if (!isOurs_) return;
    const bool hasLayerShell = offersLayerShell();
    // A compositor may start its X server only when somebody asks for it.
    const QByteArray platform = platformFor({.hasXServer = !hasLayerShell && xServerAnswers(),
                                             .hasWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"),
                                             .hasLayerShell = hasLayerShell});
    if (!platform.isEmpty()) qputenv(platformVariable, platform);
}

PlatformChoice::~PlatformChoice() {
    if (isOurs_) qunsetenv(platformVariable);
}

} // namespace kelvinbar
