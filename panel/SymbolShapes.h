#pragma once

#include <QPainterPath>
#include <QString>

namespace kelvinbar {

/// The outline of one of the program's own symbols, in units of `symbolSide`, to be filled with the winding
/// rule. Empty for an unknown name. Parsed once per name. Main thread.
QPainterPath symbolShape(const QString& name);

} // namespace kelvinbar
