#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

namespace kelvinbar {

/// An image as the StatusNotifierItem protocol carries it: rows of 32-bit pixels, alpha first, big-endian.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    friend bool operator==(const StatusNotifierPixmap&, const StatusNotifierPixmap&) = default;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

StatusNotifierPixmap statusNotifierPixmap(const QImage& image);
QImage imageOf(const StatusNotifierPixmap& pixmap);

struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps iconPixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

/// Makes the types known to D-Bus; once before the first use.
void registerStatusNotifierTypes();

} // namespace kelvinbar

Q_DECLARE_METATYPE(kelvinbar::StatusNotifierPixmap)
Q_DECLARE_METATYPE(kelvinbar::StatusNotifierToolTip)
