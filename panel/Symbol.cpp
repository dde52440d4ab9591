#include "panel/Symbol.h"

#include "panel/SymbolShapes.h"

#include <QPainter>

namespace kelvinbar {

void Symbol::setSize(double size) {
    if (assign(size_, size)) setImplicitSize(size, size);
}

std::function<void(QPainter&)> Symbol::painting() const {
    return [shape = symbolShape(name_), color = color_, side = width()](QPainter& painter) {
        painter.scale(side / symbolSide, side / symbolSide);
        painter.fillPath(shape, color);
    };
}

} // namespace kelvinbar
