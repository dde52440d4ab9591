#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

/// The types of the StatusNotifierItem protocol and their D-Bus encoding.
namespace kelvinbar {

/// An image: (iiay). Pixels are 32-bit ARGB, big-endian, row by row from the top, not premultiplied.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    friend bool operator==(const StatusNotifierPixmap&, const StatusNotifierPixmap&) = default;
};

using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

/// Conversions to and from images. Any thread.
StatusNotifierPixmap statusNotifierPixmap(const QImage& image);
QImage imageOf(const StatusNotifierPixmap& pixmap);

/// A tooltip: (sa(iiay)ss). Hosts may interpret `text` as rich text.
struct StatusNotifierToolTip {
    QString iconName; ///< of the icon theme; empty to use the pixmaps
    StatusNotifierPixmaps iconPixmaps;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

/// Registers the types with Qt D-Bus. Call before their first use; repeated calls do nothing.
void registerStatusNotifierTypes();

} // namespace kelvinbar

Q_DECLARE_METATYPE(kelvinbar::StatusNotifierPixmap)
Q_DECLARE_METATYPE(kelvinbar::StatusNotifierToolTip)
