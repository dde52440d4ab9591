#pragma once

#include <QRectF>
#include <QSGRenderNode>
#include <functional>

class QPainter;
class QQuickWindow;

namespace kelvinbar {

/// A scene-graph node that draws with the window's QPainter. The result is sharp at every scale factor, and
/// no texture or image is kept. Only for the software renderer: it draws nothing with any other.
class PainterNode final : public QSGRenderNode {
  public:
    /// The window outlives the node.
    explicit PainterNode(QQuickWindow& window) : window_(window) {}

    /// `paint` draws inside `rect`; both are in the item's coordinates. The painter's clip, transformation
    /// and opacity are set before the call.
    void set(const QRectF& rect, std::function<void(QPainter&)> paint);

    void render(const RenderState* state) override;
    [[nodiscard]] RenderingFlags flags() const override;

    [[nodiscard]] StateFlags changedStates() const override { return {}; }

    [[nodiscard]] QRectF rect() const override { return rect_; }

  private:
    QQuickWindow& window_;
    QRectF rect_;
    std::function<void(QPainter&)> paint_;
};

} // namespace kelvinbar
