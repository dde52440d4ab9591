#include "panel/SymbolPainting.h"

#include "panel/SymbolShapes.h"
#include "panel/SystemMasks.h"
#include "resources/SymbolDrawing.h"

#include <QImage>
#include <QPainter>
#include <QtMath>

namespace kelvinbar {

namespace {

QImage tinted(const QImage& mask, const QColor& color) {
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return image;
}

} // namespace

void paintSymbol(QPainter& painter, const QString& name, const QColor& color, double side,
                 SystemMasks* masks) {
    const int pixels = qCeil(side * painter.device()->devicePixelRatio());
    if (const QImage mask = masks == nullptr ? QImage() : masks->mask(name, pixels); !mask.isNull()) {
        painter.drawImage(QRectF(0, 0, side, side), tinted(mask, color));
        return;
    }
    painter.scale(side / symbolSide, side / symbolSide);
    painter.fillPath(symbolShape(name), color);
}

} // namespace kelvinbar
