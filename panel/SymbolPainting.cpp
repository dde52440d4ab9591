#include "panel/SymbolPainting.h"

#include "panel/SymbolShapes.h"

#include <QHash>
#include <QImage>
#include <QPainter>
#include <QtMath>
#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

struct SystemMasks {
    SystemSymbols symbols;
    QHash<std::pair<QString, int>, QImage> drawn; ///< null images for what the system does not have
};

SystemMasks& systemMasks() {
    static SystemMasks masks;
    return masks;
}

QImage imageOf(const SymbolMask& mask) {
    const auto side = static_cast<std::size_t>(std::max(mask.side, 0));
    if (side == 0 || mask.coverage.size() != side * side) return {};
    QImage image(mask.side, mask.side, QImage::Format_Alpha8);
    for (int row = 0; row < mask.side; ++row) {
        const auto first = mask.coverage.begin() + static_cast<std::ptrdiff_t>(row) * mask.side;
        std::copy_n(first, mask.side, image.scanLine(row));
    }
    return image;
}

/// Null where the program's own symbol is to be drawn.
QImage systemMask(const QString& name, int side) {
    SystemMasks& masks = systemMasks();
    if (!masks.symbols) return {};
    const std::pair key(name, side);
    const auto found = masks.drawn.constFind(key);
    if (found != masks.drawn.constEnd()) return *found;
    const auto mask = masks.symbols(name.toStdString(), side);
    return *masks.drawn.insert(key, mask ? imageOf(*mask) : QImage());
}

QImage tinted(const QImage& mask, const QColor& color) {
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return image;
}

} // namespace

void useSystemSymbols(SystemSymbols symbols) { systemMasks() = {std::move(symbols), {}}; }

void paintSymbol(QPainter& painter, const QString& name, const QColor& color, double side) {
    const int pixels = qCeil(side * painter.device()->devicePixelRatio());
    if (const QImage mask = systemMask(name, pixels); !mask.isNull()) {
        painter.drawImage(QRectF(0, 0, side, side), tinted(mask, color));
        return;
    }
    painter.scale(side / symbolSide, side / symbolSide);
    painter.fillPath(symbolShape(name), color);
}

} // namespace kelvinbar
