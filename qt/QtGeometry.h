#pragma once

#include "shell/Geometry.h"

#include <QRect>
#include <QSize>

/// Conversions between the core's geometry, in points, and Qt's, in device-independent pixels. The two units
/// are the same. Fractions are rounded to the nearest pixel.
namespace kelvinbar {

inline Rect rectOf(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

inline QRect qtRect(const Rect& rect) { return QRectF(rect.x, rect.y, rect.width, rect.height).toRect(); }

inline QSize qtSize(Size size) { return QSizeF(size.width, size.height).toSize(); }

} // namespace kelvinbar
