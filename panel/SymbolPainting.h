#pragma once

#include "shell/SystemSymbols.h"

#include <QColor>
#include <QString>

class QPainter;

namespace kelvinbar {

/// Symbols of the system take the place of the program's own where it has them. Empty for a system without
/// any.
void useSystemSymbols(SystemSymbols symbols);

/// Draws a symbol in one colour into the square of `side` at the painter's origin. Nothing for a name that
/// neither the system nor the program has.
void paintSymbol(QPainter& painter, const QString& name, const QColor& color, double side);

} // namespace kelvinbar
