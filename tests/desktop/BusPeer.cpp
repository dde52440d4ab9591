#include "tests/desktop/BusPeer.h"

#include "tests/desktop/EventLoop.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

QString unusedName() {
    static int count = 0;
    return QString("peer-%1").arg(++count);
}

} // namespace

PrivateBus::PrivateBus()
    : name_(unusedName()), connection_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name_)) {}

PrivateBus::~PrivateBus() { QDBusConnection::disconnectFromBus(name_); }

bool PrivateBus::hasOwner(const QString& service) const {
    return connection_.interface()->isServiceRegistered(service);
}

BusPeer::BusPeer(QString service, QString path, QString interface)
    : service_(std::move(service)), path_(std::move(path)), interface_(std::move(interface)) {
    bus_.connection().connect({}, path_, interface_, {}, this, SLOT(note(QDBusMessage)));
    // Once the bus has replied to a later call, the match rule is in effect.
    static_cast<void>(bus_.hasOwner(service_));
}

QDBusMessage BusPeer::callInterface(const QString& interface, const QString& method,
                                    const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service_, path_, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCallWatcher call(bus_.connection().asyncCall(message, 10'000));
    bool isFinished = false;
    connect(&call, &QDBusPendingCallWatcher::finished, [&] { isFinished = true; });
    EXPECT_TRUE(waitFor([&] { return isFinished; })) << method.toStdString();
    return call.reply();
}

QDBusMessage BusPeer::call(const QString& method, const QVariantList& arguments) {
    return callInterface(interface_, method, arguments);
}

QVariantMap BusPeer::properties() {
    const QDBusPendingReply<QVariantMap> reply =
        callInterface("org.freedesktop.DBus.Properties", "GetAll", {interface_});
    EXPECT_TRUE(reply.isValid()) << reply.error().message().toStdString();
    return reply.isValid() ? reply.value() : QVariantMap();
}

QList<QVariantList> BusPeer::received(const QString& signal) {
    // The program sends what it has posted; the bus may answer for it before that. Messages arrive in order,
    // so all signals sent before the reply have been received with it.
    QCoreApplication::sendPostedEvents();
    static_cast<void>(callInterface("org.freedesktop.DBus.Peer", "Ping", {}));
    QList<QVariantList> found;
    for (const QDBusMessage& message : std::as_const(messages_)) {
        if (message.member() == signal) found.append(message.arguments());
    }
    return found;
}

void FakeNotifications::appear() {
    auto bus = bus_.connection();
    EXPECT_TRUE(bus.registerObject("/org/freedesktop/Notifications", this, QDBusConnection::ExportAllSlots));
    EXPECT_TRUE(bus.registerService("org.freedesktop.Notifications"));
}

void FakeWatcher::exportObject() {
    QDBusConnection::RegisterOptions exported =
        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals;
    if (host) exported |= QDBusConnection::ExportAllProperties;
    EXPECT_TRUE(bus_.connection().registerObject("/StatusNotifierWatcher", this, exported));
}

void FakeWatcher::appear() {
    auto bus = bus_.connection();
    exportObject();
    EXPECT_TRUE(bus.registerService("org.kde.StatusNotifierWatcher"));
}

void FakeWatcher::vanish() {
    auto bus = bus_.connection();
    EXPECT_TRUE(bus.unregisterService("org.kde.StatusNotifierWatcher"));
    bus.unregisterObject("/StatusNotifierWatcher");
}

void FakeWatcher::RegisterStatusNotifierItem(const QString& service) {
    if (refused_ == refusals) {
        items_.append(service);
    } else {
        ++refused_;
        sendErrorReply(QDBusError::Failed, "not now");
    }
}

void FakeWatcher::waitInLine() {
    auto bus = bus_.connection();
    exportObject();
    const auto reply = bus.interface()->registerService("org.kde.StatusNotifierWatcher",
                                                        QDBusConnectionInterface::QueueService);
    EXPECT_EQ(reply.value(), QDBusConnectionInterface::ServiceQueued);
}

} // namespace kelvinbar
