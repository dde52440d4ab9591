#include "desktop/qt/QtScreens.h"

#include "qt/QtGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace kelvinbar {

QtScreens::QtScreens() : context_(std::make_unique<QObject>()) {
    const auto screens = QGuiApplication::screens();
    for (const QScreen* const screen : screens) follow(*screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, context_.get(), [this](QScreen* screen) {
        follow(*screen);
        announce();
    });
    QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, context_.get(), [this] { announce(); });
    QObject::connect(qGuiApp, &QGuiApplication::primaryScreenChanged, context_.get(), [this] { announce(); });
}

QtScreens::~QtScreens() = default;

void QtScreens::follow(const QScreen& screen) {
    QObject::connect(&screen, &QScreen::geometryChanged, context_.get(), [this] { announce(); });
    QObject::connect(&screen, &QScreen::availableGeometryChanged, context_.get(), [this] { announce(); });
}

void QtScreens::announce() const {
    if (changed_) changed_();
}

QRect QtScreens::visibleFrame(const QScreen& screen) const { return screen.availableGeometry(); }

ScreenFrames QtScreens::framesOf(const QScreen* screen) const {
    if (screen == nullptr) return {};
    return {rectOf(screen->geometry()), rectOf(visibleFrame(*screen))};
}

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

ScreenFrames QtScreens::around(const std::optional<Rect>& place) const {
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
