#pragma once

#include "panel/PaintedItem.h"

#include <QString>
#include <qqmlregistration.h>

namespace kelvinbar {

/// A picture of the program's own in its own colours, square and without a frame.
class Artwork : public kelvinbar::PaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)

  public:
    using PaintedItem::PaintedItem;

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name) { assign(name_, name); }

  protected:
    [[nodiscard]] std::function<void(QPainter&)> painting() const override;

  private:
    QString name_;
};

} // namespace kelvinbar
