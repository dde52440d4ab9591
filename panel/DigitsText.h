#pragma once

#include "panel/PaintedItem.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// A line of plain text with digits of equal width, so that a value does not jump when it changes. Not every
/// font has tabular digits, so each digit is drawn in a cell as wide as the widest one.
///
/// The implicit size is that of the whole line. A narrower item elides the end.
class DigitsText : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    /// Whether the line is centred in a wider item; otherwise it is at the left edge.
    Q_PROPERTY(bool isCentered READ isCentered WRITE setCentered NOTIFY isCenteredChanged)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] QString text() const { return text_; }

    void setText(const QString& text);

    [[nodiscard]] QColor color() const { return color_; }

    void setColor(const QColor& color) { assign(color_, color, &DigitsText::colorChanged); }

    [[nodiscard]] QFont font() const { return font_; }

    void setFont(const QFont& font);

    [[nodiscard]] bool isCentered() const { return isCentered_; }

    void setCentered(bool isCentered) { assign(isCentered_, isCentered, &DigitsText::isCenteredChanged); }

  signals:
    void textChanged();
    void colorChanged();
    void fontChanged();
    void isCenteredChanged();

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    /// Updates the implicit size after a change of text or font.
    void measure();

    QString text_;
    QColor color_ = Qt::white;
    QFont font_;
    bool isCentered_ = false;
};

} // namespace kelvinbar
