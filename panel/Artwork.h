#pragma once

#include "panel/PaintedItem.h"

#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// An image of the program's artwork in its own colours, such as "AboutIcon". The item is drawn as a square
/// without a frame. A name without an image draws nothing.
class Artwork : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name) { assign(name_, name, &Artwork::nameChanged); }

  signals:
    void nameChanged();

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    QString name_;
};

} // namespace kelvinbar
