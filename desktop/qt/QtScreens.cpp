#include "desktop/qt/QtScreens.h"

#include "qt/QtGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace kelvinbar {

namespace {

ScreenFrames framesOf(const QScreen* screen) {
    if (screen == nullptr) return {};
    return {rectOf(screen->geometry()), rectOf(screen->availableGeometry())};
}

} // namespace

std::optional<Rect> QtScreens::mainVisibleFrame() const {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? std::nullopt : std::optional(framesOf(screen).visibleFrame);
}

std::vector<Rect> QtScreens::visibleFrames() const {
    std::vector<Rect> frames;
    const auto screens = QGuiApplication::screens();
    for (const QScreen* const screen : screens) frames.push_back(framesOf(screen).visibleFrame);
    return frames;
}

ScreenFrames screenAround(const std::optional<Rect>& place) {
    if (!place) return framesOf(QGuiApplication::primaryScreen());
    const QPoint center = qtRect(*place).center();
    // A click at the edge may be reported a pixel outside the screen.
    const auto distance = [&](const QScreen* screen) {
        const QRect frame = screen->geometry();
        const QPoint nearest(std::clamp(center.x(), frame.left(), frame.right()),
                             std::clamp(center.y(), frame.top(), frame.bottom()));
        return (nearest - center).manhattanLength();
    };
    const auto screens = QGuiApplication::screens();
    const auto found = std::ranges::min_element(screens, {}, distance);
    return framesOf(found == screens.end() ? nullptr : *found);
}

} // namespace kelvinbar
