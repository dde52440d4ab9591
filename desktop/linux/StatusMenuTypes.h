#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

/// What the menu protocol (com.canonical.dbusmenu) carries.
namespace kelvinbar {

/// An entry and what is below it, as the menu protocol carries it.
struct StatusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<StatusMenuLayout> children;
};

/// The properties of one entry.
struct StatusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// An event of one entry.
struct StatusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& value);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuItemProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuItemProperties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& value);

/// Makes the types known to D-Bus; once before the first use.
void registerStatusMenuTypes();

} // namespace kelvinbar

Q_DECLARE_METATYPE(kelvinbar::StatusMenuLayout)
Q_DECLARE_METATYPE(kelvinbar::StatusMenuItemProperties)
Q_DECLARE_METATYPE(kelvinbar::StatusMenuEvent)
