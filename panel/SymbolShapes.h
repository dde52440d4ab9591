#pragma once

#include <QPainterPath>
#include <QString>

namespace kelvinbar {

/// The outline of a symbol, filled where it winds. Empty for a name that the set does not have.
QPainterPath symbolShape(const QString& name);

} // namespace kelvinbar
