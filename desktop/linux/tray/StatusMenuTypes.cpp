#include "desktop/linux/tray/StatusMenuTypes.h"

#include <QDBusMetaType>

namespace kelvinbar {

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuLayout& value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const StatusMenuLayout& child : value.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

/// Never called: layouts are only sent. Qt D-Bus requires the operator to register the type.
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuLayout& value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        value.children.append(qdbus_cast<StatusMenuLayout>(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuItemProperties& value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuItemProperties& value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuRemovedProperties& value) {
    argument.beginStructure();
    argument << value.id << value.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuRemovedProperties& value) {
    argument.beginStructure();
    argument >> value.id >> value.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusMenuEvent& value) {
    argument.beginStructure();
    argument << value.id << value.name << value.data << value.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusMenuEvent& value) {
    argument.beginStructure();
    argument >> value.id >> value.name >> value.data >> value.timestamp;
    argument.endStructure();
    return argument;
}

void registerStatusMenuTypes() {
    qDBusRegisterMetaType<StatusMenuLayout>();
    qDBusRegisterMetaType<StatusMenuItemProperties>();
    qDBusRegisterMetaType<QList<StatusMenuItemProperties>>();
    qDBusRegisterMetaType<StatusMenuRemovedProperties>();
    qDBusRegisterMetaType<QList<StatusMenuRemovedProperties>>();
    qDBusRegisterMetaType<StatusMenuEvent>();
    qDBusRegisterMetaType<QList<StatusMenuEvent>>();
}

} // namespace kelvinbar
