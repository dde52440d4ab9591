#include "desktop/linux/tray/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace kelvinbar {

StatusNotifierPixmap statusNotifierPixmap(const QImage& image) {
    const QImage converted = image.convertToFormat(QImage::Format_ARGB32);
    const qsizetype count = qsizetype{converted.width()} * converted.height();
    StatusNotifierPixmap pixmap{converted.width(), converted.height(),
                                QByteArray(count * 4, Qt::Uninitialized)};
    qToBigEndian<quint32>(converted.constBits(), count, pixmap.pixels.data());
    return pixmap;
}

QImage imageOf(const StatusNotifierPixmap& pixmap) {
    QImage image(pixmap.width, pixmap.height, QImage::Format_ARGB32);
    qFromBigEndian<quint32>(pixmap.pixels.constData(), static_cast<qsizetype>(pixmap.width) * pixmap.height,
                            image.bits());
    return image;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.iconPixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.iconPixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerStatusNotifierTypes() {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

} // namespace kelvinbar
