#include "desktop/linux/tray/StatusNotifierWatcher.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QFile>
#include <QStringList>

namespace kelvinbar {

namespace {

QDBusMessage propertyQuestion(const char* property) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherService, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    call << watcherService << property;
    return call;
}

/// The value in the answer to a question for a property; invalid if there is none.
QVariant propertyIn(const QDBusMessage& reply) {
    const QVariant answer = reply.arguments().value(0);
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage &&
                          answer.metaType() == QMetaType::fromType<QDBusVariant>();
    return isAnswer ? answer.value<QDBusVariant>().variant() : QVariant();
}

} // namespace

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

std::string processName(uint process) {
    QFile name(QString("/proc/%1/comm").arg(process));
    return name.open(QFile::ReadOnly) ? name.readAll().trimmed().toStdString() : std::string();
}

QDBusMessage hostQuestion() { return propertyQuestion("IsStatusNotifierHostRegistered"); }

bool saysThatAHostIsThere(const QDBusMessage& reply) {
    const QVariant answer = propertyIn(reply);
    return !answer.isValid() || answer.toBool();
}

QDBusMessage registeredItemsQuestion() { return propertyQuestion("RegisteredStatusNotifierItems"); }

std::optional<QStringList> registeredItemsIn(const QDBusMessage& reply) {
    const QVariant value = propertyIn(reply);
    const bool isList = value.metaType() == QMetaType::fromType<QStringList>();
    return isList ? std::optional(value.toStringList()) : std::nullopt;
}

bool isItemOf(const QString& item, const QString& service) {
    return item == service || item.startsWith(service + '/') || item.startsWith(service + '@');
}

bool isHostThere(const QDBusConnection& bus) {
    constexpr int mostMilliseconds = 500;
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(watcherService)) return false;
    return saysThatAHostIsThere(bus.call(hostQuestion(), QDBus::Block, mostMilliseconds));
}

} // namespace kelvinbar
