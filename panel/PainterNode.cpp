#include "panel/PainterNode.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <utility>

namespace kelvinbar {

void PainterNode::set(const QRectF& rect, std::function<void(QPainter&)> paint) {
    rect_ = rect;
    paint_ = std::move(paint);
    markDirty(DirtyGeometry | DirtyMaterial);
}

QSGRenderNode::RenderingFlags PainterNode::flags() const {
    return BoundedRectRendering | DepthAwareRendering;
}

void PainterNode::render(const RenderState* state) {
    auto* const painter = static_cast<QPainter*>(
        window_.rendererInterface()->getResource(&window_, QSGRendererInterface::PainterResource));
    const QRegion* const region = state->clipRegion();
    // Null for an item that is entirely clipped away.
    if (painter == nullptr || !paint_ || region == nullptr || region->isEmpty()) return;
    // The region is in window coordinates, so it is set before the item's transformation.
    painter->setClipRegion(*region, Qt::ReplaceClip);
    painter->setTransform(matrix()->toTransform());
    painter->setOpacity(inheritedOpacity());
    painter->setRenderHint(QPainter::Antialiasing);
    paint_(*painter);
}

} // namespace kelvinbar
