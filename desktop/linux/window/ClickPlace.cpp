#include "desktop/linux/window/ClickPlace.h"

#include <QMargins>
#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

/// No status item is larger, in device-independent pixels.
constexpr int greatestItem = 64;

bool isNear(QPoint place, QPoint pointer) {
    const QPoint difference = place - pointer;
    return std::max(std::abs(difference.x()), std::abs(difference.y())) <= greatestItem;
}

bool isNearEdge(QPoint place, const ScaledScreen& screen) {
    const QMargins bars(widestBar, widestBar, widestBar, widestBar);
    return screen.frame.contains(place) && !screen.frame.marginsRemoved(bars).contains(place);
}

bool isInBar(QPoint place, const QList<ScaledScreen>& screens) {
    return std::ranges::any_of(screens, [place](const ScaledScreen& screen) {
        return screen.frame.contains(place) && !screen.visibleFrame.contains(place);
    });
}

} // namespace

QPoint logicalPlace(QPoint devicePlace, const QList<ScaledScreen>& screens) {
    for (const ScaledScreen& screen : screens) {
        // Qt scales screens but leaves their top left corners where they are.
        const QPoint origin = screen.frame.topLeft();
        const QRectF deviceFrame(origin, QSizeF(screen.frame.size()) * screen.ratio);
        if (deviceFrame.contains(devicePlace))
            return origin + (QPointF(devicePlace - origin) / screen.ratio).toPoint();
    }
    return devicePlace;
}

std::optional<QPoint> clickPlace(QPoint reported, std::optional<QPoint> pointer,
                                 const QList<ScaledScreen>& screens) {
    const std::array candidates{logicalPlace(reported, screens), reported};
    const auto believed = [&](auto isBelieved) -> std::optional<QPoint> {
        const auto* const found = std::ranges::find_if(candidates, isBelieved);
        return found == candidates.end() ? std::nullopt : std::optional(*found);
    };
    if (pointer) {
        if (const auto near = believed([&](QPoint place) { return isNear(place, *pointer); })) return near;
        if (isInBar(*pointer, screens)) return pointer;
    }
    const auto inBar = believed([&](QPoint place) { return isInBar(place, screens); });
    return inBar ? inBar : pointer;
}

std::optional<QPoint> plasmaClickPlace(QPoint reported, const QList<ScaledScreen>& screens) {
    std::optional<QPoint> first;
    // Qt rounds the ratio of a Wayland screen up to a whole number. Scales are multiples of a quarter.
    for (const qreal excess : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        for (const ScaledScreen& screen : screens) {
            const qreal ratio = std::max(1.0, screen.ratio - excess);
            const QPoint place = (QPointF(reported) / ratio).toPoint();
            if (isNearEdge(place, screen)) return place;
            if (!first && screen.frame.contains(place)) first = place;
        }
    }
    return first;
}

} // namespace kelvinbar
