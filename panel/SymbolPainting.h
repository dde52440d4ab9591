#pragma once

#include <QColor>
#include <QString>

class QPainter;

namespace kelvinbar {

class SystemMasks;

/// Draws a symbol in one colour into the square of `side` points at the painter's origin. Uses the system's
/// symbol if `masks` has one of this name, or else the program's own. `masks` may be null. Draws nothing for
/// an unknown name. Changes the painter's transformation.
void paintSymbol(QPainter& painter, const QString& name, const QColor& color, double side,
                 SystemMasks* masks);

} // namespace kelvinbar
