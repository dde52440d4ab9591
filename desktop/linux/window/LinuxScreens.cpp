#include "desktop/linux/window/LinuxScreens.h"

#include "desktop/linux/window/x11/X11Session.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace kelvinbar {

namespace {

/// Qt scales screens but leaves their top left corners where they are.
QRect deviceFrame(const QScreen& screen) {
    return {screen.geometry().topLeft(),
            (QSizeF(screen.geometry().size()) * screen.devicePixelRatio()).toSize()};
}

QRect logicalRect(const QRect& device, const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const qreal ratio = screen.devicePixelRatio();
    return QRectF(QPointF(origin) + QPointF(device.topLeft() - origin) / ratio, QSizeF(device.size()) / ratio)
        .toAlignedRect();
}

/// What the bars leave of the screen, in device pixels.
QRect visibleDeviceFrame(const QScreen& screen, const X11Session& x11) {
    const QRect frame = deviceFrame(screen);
    QRect visible = withoutStruts(frame, x11.struts(), x11.desktopSize());
    const QList<QRect> areas = x11.workAreas();
    for (const QRect& area : areas) {
        if (area.intersects(frame)) visible &= area;
    }
    return visible;
}

/// The X server of a Wayland session sees the pointer only above X11 windows.
std::optional<QPoint> knownPointer() {
    const bool isKnown = qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    return isKnown ? std::optional(QCursor::pos()) : std::nullopt;
}

} // namespace

std::optional<Rect> lowestFrame(const std::vector<Rect>& frames) {
    const auto found = std::ranges::min_element(frames, {}, &Rect::height);
    return found == frames.end() ? std::nullopt : std::optional(*found);
}

QRect LinuxScreens::visibleFrame(const QScreen& screen) const {
    const QRect available = screen.availableGeometry();
    if (x11_ == nullptr) return available;
    const QRect visible = logicalRect(visibleDeviceFrame(screen, *x11_), screen) & available;
    return visible.isEmpty() ? available : visible;
}

std::optional<Rect> LinuxScreens::mainVisibleFrame() const {
    // The panel has to fit on whichever screen is chosen.
    return corner_ ? lowestFrame(visibleFrames()) : QtScreens::mainVisibleFrame();
}

Rect LinuxScreens::usualPlace(const ScreenFrames& screen) const {
    return corner_ ? cornerPlace(*corner_, screen.visibleFrame) : QtScreens::usualPlace(screen);
}

std::optional<QPoint> LinuxScreens::placeOfClick(QPoint reported) const {
    QList<ScaledScreen> screens;
    const auto all = QGuiApplication::screens();
    for (const QScreen* const screen : all)
        screens.append({screen->geometry(), visibleFrame(*screen), screen->devicePixelRatio()});
    if (reports_ == ClickReports::ofPlasma) return plasmaClickPlace(reported, screens);
    return clickPlace(reported, knownPointer(), screens);
}

} // namespace kelvinbar
