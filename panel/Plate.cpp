#include "panel/Plate.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

namespace kelvinbar {

namespace {

/// The border is drawn inside the plate, on whole pixels.
constexpr double strokeWidth = 1;

QBrush gradientBrush(const QList<QColor>& colors, const QPointF& from, const QPointF& to) {
    if (colors.isEmpty()) return Qt::NoBrush;
    if (colors.size() == 1) return colors.front();
    QLinearGradient gradient(from, to);
    const auto last = static_cast<double>(colors.size() - 1);
    for (qsizetype index = 0; index < colors.size(); ++index) {
        gradient.setColorAt(static_cast<double>(index) / last, colors[index]);
    }
    return gradient;
}

} // namespace

std::function<void(QPainter&)> Plate::painting() const {
    const QRectF rect = boundingRect();
    const QBrush brush =
        gradientBrush(colors_, rect.topLeft(), isVertical_ ? rect.bottomLeft() : rect.bottomRight());
    const double radius = std::min({radius_, rect.width() / 2, rect.height() / 2});
    const QPen pen = stroke_.alpha() == 0 ? QPen(Qt::NoPen) : QPen(stroke_, strokeWidth);
    return [rect, brush, radius, pen](QPainter& painter) {
        painter.setBrush(brush);
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect, radius, radius);
        if (pen.style() == Qt::NoPen) return;
        constexpr double inset = strokeWidth / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(pen);
        painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    };
}

} // namespace kelvinbar
