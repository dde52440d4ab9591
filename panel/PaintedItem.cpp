#include "panel/PaintedItem.h"

#include "panel/PainterNode.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRendererInterface>
#include <QSGTexture>
#include <QtMath>
#include <memory>

namespace kelvinbar {

namespace {

/// Whether what is in the window is drawn with a QPainter.
bool hasPainter(const QQuickWindow& window) {
    return window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
}

/// In whole pixels, so it may be a little larger than `size`.
QImage painted(const std::function<void(QPainter&)>& paint, const QSizeF& size, double pixelRatio) {
    QImage image(qCeil(size.width() * pixelRatio), qCeil(size.height() * pixelRatio),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return image;
}

} // namespace

PaintedItem::PaintedItem(QQuickItem* parent) : QQuickItem(parent) { setFlag(ItemHasContents); }

QSGNode* PaintedItem::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    if (width() <= 0 || height() <= 0) {
        const std::unique_ptr<QSGNode> former(node); // the item owns the node and must delete it
        return nullptr;
    }
    return hasPainter(*window()) ? painterNode(node) : imageNode(node);
}

QSGNode* PaintedItem::painterNode(QSGNode* node) const {
    auto* const painter = node == nullptr ? new PainterNode(*window()) : static_cast<PainterNode*>(node);
    painter->set(boundingRect(), painting());
    return painter;
}

QSGNode* PaintedItem::imageNode(QSGNode* node) const {
    auto* const image = node == nullptr ? window()->createImageNode() : static_cast<QSGImageNode*>(node);
    const QImage picture = painted(painting(), size(), window()->effectiveDevicePixelRatio());
    image->setOwnsTexture(true);
    image->setTexture(window()->createTextureFromImage(picture, QQuickWindow::TextureHasAlphaChannel));
    image->setFiltering(QSGTexture::Linear);
    image->setRect(QRectF(QPointF(), picture.deviceIndependentSize()));
    return image;
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
