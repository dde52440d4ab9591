#include "desktop/linux/window/PlatformChoice.h"

#include "desktop/linux/window/x11/X11Connection.h"

namespace kelvinbar {

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

/// Whether the X server of the environment accepts us.
bool xServerAnswers() { return !qEnvironmentVariableIsEmpty("DISPLAY") && connectToX11() != nullptr; }

} // namespace

SessionDisplays displaysOfSession(const std::function<bool()>& offersLayerShell) {
    const bool hasLayerShell = offersLayerShell();
    // A compositor may start its X server only when somebody asks for it.
    return {.hasXServer = !hasLayerShell && xServerAnswers(),
            .hasWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"),
            .hasLayerShell = hasLayerShell};
}

Finding platformFinding(const QByteArray& choice, const SessionDisplays& displays) {
    Finding finding{.subject = "window system", .found = {}};
    if (!choice.isEmpty()) {
        finding.found = choice.toStdString() + ", as QT_QPA_PLATFORM says";
    } else if (displays.hasLayerShell) {
        finding.found = "wayland, with layer surfaces";
    } else if (displays.hasXServer) {
        finding.found = displays.hasWayland ? "xcb, on the X server of the Wayland session" : "xcb";
    } else if (displays.hasWayland) {
        finding.state = FindingState::note;
        finding.found = "wayland, without layer surfaces: the compositor places the panel";
    } else {
        finding.state = FindingState::problem;
        finding.found = "no display: neither an X server nor a Wayland compositor is named or answers";
        finding.advice = "Start the program inside the session of the desktop";
    }
    return finding;
}

QByteArray platformFor(const SessionDisplays& displays) {
    if (displays.hasLayerShell) return "wayland";
    if (displays.hasXServer) return "xcb";
    return displays.hasWayland ? "wayland" : "";
}

PlatformChoice::PlatformChoice(const std::function<bool()>& offersLayerShell)
    : isOurs_(!qEnvironmentVariableIsSet(platformVariable)) {
    if (!isOurs_) return;
    const QByteArray platform = platformFor(displaysOfSession(offersLayerShell));
    if (!platform.isEmpty()) qputenv(platformVariable, platform);
}

PlatformChoice::~PlatformChoice() {
    if (isOurs_) qunsetenv(platformVariable);
}

} // namespace kelvinbar
