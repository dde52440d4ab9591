#include "panel/PaintedItem.h"

#include "panel/PainterNode.h"

#include <QQuickWindow>
#include <memory>

namespace kelvinbar {

PaintedItem::PaintedItem(QQuickItem* parent) : QQuickItem(parent) { setFlag(ItemHasContents); }

QSGNode* PaintedItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    if (width() <= 0 || height() <= 0) {
        const std::unique_ptr<QSGNode> former(node); // the item owns the node and must delete it
        return nullptr;
    }
    auto* const painter = node == nullptr ? new PainterNode(*window()) : static_cast<PainterNode*>(node);
    painter->set(boundingRect(), painting());
    return painter;
}

void PaintedItem::geometryChange(const QRectF& geometry, const QRectF& former) {
    QQuickItem::geometryChange(geometry, former);
    if (geometry.size() != former.size()) update();
}

void PaintedItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged) update();
}

} // namespace kelvinbar
