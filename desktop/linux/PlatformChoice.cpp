#include "desktop/linux/PlatformChoice.h"

#include "desktop/linux/x11/X11Connection.h"

namespace kelvinbar {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

/// Whether the X server of the environment accepts us.
bool xServerAnswers() { return !qEnvironmentVariableIsEmpty("DISPLAY") && connectToX11() != nullptr; }

} // namespace

QByteArray platformFor(bool hasXServer, bool hasWaylandDisplay) {
    if (hasXServer) return "xcb";
    return hasWaylandDisplay ? "wayland" : "";
}

PlatformChoice::PlatformChoice() : isOurs_(!qEnvironmentVariableIsSet(platformVariable)) {
    if (!isOurs_) return;
    const QByteArray platform =
        platformFor(xServerAnswers(), !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
    if (!platform.isEmpty()) qputenv(platformVariable, platform);
}

PlatformChoice::~PlatformChoice() {
    if (isOurs_) qunsetenv(platformVariable);
}

} // namespace kelvinbar
