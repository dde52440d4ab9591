#pragma once

#include "panel/PaintedItem.h"

#include <QColor>
#include <QList>
#include <qqmlregistration.h>

namespace kelvinbar {

/// A rounded rectangle with a gradient and a thin line around it: what cards, rows and controls lie on.
class Plate : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// From the top left to the bottom right corner at equal distances; none for an empty plate.
    Q_PROPERTY(QList<QColor> colors READ colors WRITE setColors NOTIFY changed)
    Q_PROPERTY(QColor stroke READ stroke WRITE setStroke NOTIFY changed)
    /// Of the corners, in points; half the height makes a capsule.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY changed)
    /// From the top to the bottom instead.
    Q_PROPERTY(bool isVertical READ isVertical WRITE setVertical NOTIFY changed)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] const QList<QColor>& colors() const { return colors_; }

    void setColors(const QList<QColor>& colors) { assign(colors_, colors); }

    [[nodiscard]] QColor stroke() const { return stroke_; }

    void setStroke(const QColor& stroke) { assign(stroke_, stroke); }

    [[nodiscard]] double radius() const { return radius_; }

    void setRadius(double radius) { assign(radius_, radius); }

    [[nodiscard]] bool isVertical() const { return isVertical_; }

    void setVertical(bool isVertical) { assign(isVertical_, isVertical); }

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    QList<QColor> colors_;
    QColor stroke_ = Qt::transparent;
    double radius_ = 0;
    bool isVertical_ = false;
};

} // namespace kelvinbar
