#include "desktop/linux/PlatformChoice.h"

#include <xcb/xcb.h>

namespace kelvinbar {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

/// Whether the X server of the environment accepts us.
bool xServerAnswers() {
    if (qEnvironmentVariableIsEmpty("DISPLAY")) return false;
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

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
