#include "panel/Symbol.h"

#include "panel/SymbolPainting.h"
#include "panel/SystemMasks.h"

namespace kelvinbar {

void Symbol::setSize(double size) {
    if (assign(size_, size, &Symbol::sizeChanged)) setImplicitSize(size, size);
}

std::function<void(QPainter&)> Symbol::painting() const {
    return [name = name_, color = color_, side = width(), masks = systemMasksOf(window())](
               QPainter& painter) { paintSymbol(painter, name, color, side, masks); };
}

} // namespace kelvinbar
