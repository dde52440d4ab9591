#pragma once

#include <QQuickItem>
#include <functional>
#include <qqmlregistration.h>

class QPainter;

namespace kelvinbar {

/// An item that is drawn with a painter.
class PaintedItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit PaintedItem(QQuickItem* parent = nullptr);

  protected:
    /// Draws the item as it is now into its own rectangle; keeps nothing of the item.
    [[nodiscard]] virtual std::function<void(QPainter&)> painting() const = 0;

    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;

    /// Sets a property of the item, which is drawn anew when it changes.
    template <typename T>
    bool assign(T& field, const T& value) {
        if (field == value) return false;
        field = value;
        update();
        emit changed();
        return true;
    }

  signals:
    void changed();
};

} // namespace kelvinbar
