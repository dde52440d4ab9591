#pragma once

#include "panel/PropertyChange.h"

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

    /// Sets a property, emits its signal and redraws the item. Returns false when the value is the same.
    template <typename Item, typename Value>
    bool assign(Value& field, const Value& value, void (Item::*changed)()) {
        const bool isChanged = changeProperty(static_cast<Item&>(*this), field, value, changed);
        if (isChanged) update();
        return isChanged;
    }

  private:
    /// Update the item's node, of the one kind or the other, or create it.
    QSGNode* painterNode(QSGNode* node) const;
    QSGNode* imageNode(QSGNode* node) const;
};

} // namespace kelvinbar
