#pragma once

#include <QRectF>
#include <QSGRenderNode>
#include <functional>

class QPainter;
class QQuickWindow;

namespace kelvinbar {

/// Draws with a painter straight into the window: sharp at every scale, and no picture is kept of what is
/// drawn. For the software renderer, which the panel runs on everywhere.
class PainterNode final : public QSGRenderNode {
  public:
    explicit PainterNode(QQuickWindow& window) : window_(window) {}

    /// `paint` draws inside `rect`, both in the item's coordinates.
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
