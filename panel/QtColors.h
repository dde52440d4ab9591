#pragma once

#include "panel/PanelColor.h"

#include <QColor>
#include <QList>
#include <cstdint>
#include <span>

namespace kelvinbar {

/// Conversions from the panel's colours to Qt's.
inline QColor qtColor(const PanelColor& color) {
    QColor result(color.red, color.green, color.blue);
    result.setAlphaF(static_cast<float>(color.opacity));
    return result;
}

inline PanelColor panelColor(const QColor& color) {
    const auto channel = [](int value) { return static_cast<std::uint8_t>(value); };
    return {channel(color.red()), channel(color.green()), channel(color.blue()), color.alphaF()};
}

inline QList<QColor> qtColors(std::span<const PanelColor> colors) {
    QList<QColor> result;
    for (const PanelColor& color : colors) result.append(qtColor(color));
    return result;
}

} // namespace kelvinbar
