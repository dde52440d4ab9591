#pragma once

#include "platform/linux/desktop/StatusNotifierTypes.h"

#include <QImage>
#include <QString>

namespace kelvinbar {

/// The sides, in pixels, that hosts ask icons for, on plain and on dense screens.
inline constexpr int iconSides[]{16, 22, 24, 32, 44, 48, 64};

/// A reading as a square icon, for hosts that show no text: the number as large as fits, its digits of one
/// width, in the colour of text on the desktop's panels with a rim that keeps it legible on the opposite one.
/// `value` is the compact form, such as "48°" or "1200rpm"; of it the number is drawn, and a degree sign.
QImage readingIcon(const QString& value, int side, bool isOnDark);

/// One for each side.
StatusNotifierPixmaps readingIcons(const QString& value, bool isOnDark);

/// What of a compact value fits into an icon: "1200rpm" is "1200".
QString iconText(const QString& value);

} // namespace kelvinbar
