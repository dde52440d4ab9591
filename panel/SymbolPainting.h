#pragma once

#include <QColor>
#include <QString>

class QPainter;

namespace kelvinbar {

class SystemMasks;

/// Draws a symbol in one colour into the square of `side` points at the painter's origin: the system's, or
/// the program's own where `masks` is null or lacks it. Draws nothing for a name that neither has.
void paintSymbol(QPainter& painter, const QString& name, const QColor& color, double side,
                 SystemMasks* masks);

} // namespace kelvinbar
