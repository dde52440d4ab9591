#include "desktop/linux/tray/StatusNotifierWatcher.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>

namespace kelvinbar {

QDBusMessage watcherProcessQuestion() {
    constexpr auto busService = "org.freedesktop.DBus";
    QDBusMessage call = QDBusMessage::createMethodCall(busService, "/org/freedesktop/DBus", busService,
                                                       "GetConnectionUnixProcessID");
    call << watcherService;
    return call;
}

std::optional<uint> watcherProcessIn(const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage) return reply.arguments().value(0).toUInt();
    const bool isThere = reply.errorName() == "org.freedesktop.DBus.Error.UnixProcessIdUnknown";
    return isThere ? std::optional(0U) : std::nullopt;
}

QDBusMessage hostQuestion() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherService, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    call << watcherService << "IsStatusNotifierHostRegistered";
    return call;
}

bool saysThatAHostIsThere(const QDBusMessage& reply) {
    const QVariant answer = reply.arguments().value(0);
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage &&
                          answer.metaType() == QMetaType::fromType<QDBusVariant>();
    return !isAnswer || answer.value<QDBusVariant>().variant().toBool();
}

bool isHostThere(const QDBusConnection& bus) {
    constexpr int mostMilliseconds = 500;
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(watcherService)) return false;
    return saysThatAHostIsThere(bus.call(hostQuestion(), QDBus::Block, mostMilliseconds));
}

} // namespace kelvinbar
