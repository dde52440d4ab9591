#include "panel/PanelShadow.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace kelvinbar {

namespace {

/// How far the shadow reaches and how far it lies below the panel, in points.
constexpr int reach = 18;
constexpr double drop = 4;

/// Opacity next to the panel. It falls to nothing with the square of the distance.
constexpr double density = 0.42;

QPainterPath roundedPath(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QColor inkAt(int distance) {
    const double nearness = 1 - static_cast<double>(distance) / reach;
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(density * nearness * nearness));
}

} // namespace

/// Rings of one point around the panel, each fainter than the one inside it.
std::function<void(QPainter&)> PanelShadow::painting() const {
    const QRectF panel = boundingRect().adjusted(leftRoom_, topRoom_, -rightRoom_, -bottomRoom_);
    return [panel, radius = radius_](QPainter& painter) {
        QPainterPath outside;
        outside.addRect(panel.adjusted(-reach, -reach, reach, reach + drop));
        painter.setClipPath(outside - roundedPath(panel, radius), Qt::IntersectClip);
        painter.setPen(Qt::NoPen);
        const QRectF caster = panel.translated(0, drop);
        // Under the corners and along the lower edge the shadow begins inside the panel's outline.
        QPainterPath inner;
        for (int distance = -static_cast<int>(drop); distance < reach; ++distance) {
            const QPainterPath outer =
                roundedPath(caster.adjusted(-distance, -distance, distance, distance), radius + distance);
            painter.fillPath(outer - inner, inkAt(std::max(distance, 0)));
            inner = outer;
        }
    };
}

} // namespace kelvinbar
