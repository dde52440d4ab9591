#pragma once

#include <QQuickItem>
#include <functional>
#include <qqmlregistration.h>

class QPainter;

namespace kelvinbar {

/// An item that is drawn with a QPainter directly into the window; QQuickPaintedItem would keep an image for
/// each of hundreds of items. Only with another renderer than the toolkit's software renderer, which the
/// panel does not choose by itself, is it drawn into an image. Main thread.
class PaintedItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit PaintedItem(QQuickItem* parent = nullptr);

  protected:
    /// Returns a function that draws the item, in its present state, into its own rectangle. The function
    /// holds copies only, since it may outlive the item.
    [[nodiscard]] virtual std::function<void(QPainter&)> painting() const = 0;

    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;
    /// Redraws the item where a point has another number of pixels.
    void itemChange(ItemChange change, const ItemChangeData& data) override;

    /// Sets a property, redraws the item and emits `changed`. False when the value is the same.
    template <typename T>
    bool assign(T& field, const T& value) {
        if (field == value) return false;
        field = value;
        update();
        emit changed();
        return true;
    }

  private:
    /// Update the item's node, of the one kind or the other, or create it.
    QSGNode* painterNode(QSGNode* node) const;
    QSGNode* imageNode(QSGNode* node) const;

  signals:
    /// One signal for all properties; emitted after the change.
    void changed();
};

} // namespace kelvinbar
