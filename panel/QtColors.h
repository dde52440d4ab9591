#pragma once

#include "panel/PanelColor.h"

#include <QColor>
#include <QList>
#include <vector>

namespace kelvinbar {

/// Conversions from the panel's colours to Qt's.
inline QColor qtColor(const PanelColor& color) {
    QColor result(color.red, color.green, color.blue);
    result.setAlphaF(static_cast<float>(color.opacity));
    return result;
}

inline QList<QColor> qtColors(const std::vector<PanelColor>& colors) {
    QList<QColor> result;
    for (const PanelColor& color : colors) result.append(qtColor(color));
    return result;
}

} // namespace kelvinbar
