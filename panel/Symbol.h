#pragma once

#include "panel/PaintedItem.h"

#include <QColor>
#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// A symbol in one colour: the system's, or else the program's own drawing of that name. Always square; an
/// unknown name draws nothing.
class Symbol : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// The side of the square in points, also as the implicit size.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name) { assign(name_, name, &Symbol::nameChanged); }

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color) { assign(color_, color, &Symbol::colorChanged); }

    [[nodiscard]] double size() const { return size_; }

    void setSize(double size);

  signals:
    void nameChanged();
    void colorChanged();
    void sizeChanged();

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    QString name_;
    QColor color_ = Qt::white;
    double size_ = 0;
};

} // namespace kelvinbar
