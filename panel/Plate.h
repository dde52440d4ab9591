#pragma once

#include "panel/PaintedItem.h"

#include <QColor>
#include <QList>
#include <qqmlregistration.h>

namespace kelvinbar {

/// A rounded rectangle with a gradient and a thin border: the background of cards, rows and controls.
class Plate : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The gradient's colours at equal distances, from the top left to the bottom right corner. Empty for no
    /// fill.
    Q_PROPERTY(QList<QColor> colors READ colors WRITE setColors NOTIFY colorsChanged)
    /// The colour of the border; transparent for none.
    Q_PROPERTY(QColor stroke READ stroke WRITE setStroke NOTIFY strokeChanged)
    /// The corner radius in points; half the height makes a capsule.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    /// Whether the gradient runs from top to bottom.
    Q_PROPERTY(bool isVertical READ isVertical WRITE setVertical NOTIFY isVerticalChanged)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] const QList<QColor>& colors() const { return colors_; }

    void setColors(const QList<QColor>& colors) { assign(colors_, colors, &Plate::colorsChanged); }

    [[nodiscard]] QColor stroke() const { return stroke_; }

    void setStroke(const QColor& stroke) { assign(stroke_, stroke, &Plate::strokeChanged); }

    [[nodiscard]] double radius() const { return radius_; }

    void setRadius(double radius) { assign(radius_, radius, &Plate::radiusChanged); }

    [[nodiscard]] bool isVertical() const { return isVertical_; }

    void setVertical(bool isVertical) { assign(isVertical_, isVertical, &Plate::isVerticalChanged); }

  signals:
    void colorsChanged();
    void strokeChanged();
    void radiusChanged();
    void isVerticalChanged();

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    QList<QColor> colors_;
    QColor stroke_ = Qt::transparent;
    double radius_ = 0;
    bool isVertical_ = false;
};

} // namespace kelvinbar
