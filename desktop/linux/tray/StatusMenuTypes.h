#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The types of the menu protocol (com.canonical.dbusmenu) and their D-Bus encoding.
namespace kelvinbar {

/// An entry and the entries below it: (ia{sv}av).
struct StatusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<StatusMenuLayout> children;
};

/// The properties of one entry: (ia{sv}).
struct StatusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// Properties that an entry no longer has: (ias).
struct StatusMenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// An event of one entry, such as a click: (isvu).
struct StatusMenuEvent {
    int id = 0;
    QString name; ///< for example "clicked"
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& value);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuItemProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuItemProperties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuRemovedProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuRemovedProperties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& value);

/// Registers the types with Qt D-Bus. Call before their first use; repeated calls do nothing.
void registerStatusMenuTypes();

} // namespace kelvinbar

Q_DECLARE_METATYPE(kelvinbar::StatusMenuLayout)
Q_DECLARE_METATYPE(kelvinbar::StatusMenuItemProperties)
Q_DECLARE_METATYPE(kelvinbar::StatusMenuRemovedProperties)
Q_DECLARE_METATYPE(kelvinbar::StatusMenuEvent)
