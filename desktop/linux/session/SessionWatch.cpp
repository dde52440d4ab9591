#include "desktop/linux/session/SessionWatch.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

namespace kelvinbar {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";

} // namespace

SessionWatch::SessionWatch(const QDBusConnection& bus, std::function<void()> onAway)
    : bus_(bus), onAway_(std::move(onAway)) {
    moveTo(bus);
}

void SessionWatch::moveTo(const QDBusConnection& bus) {
    bus_ = bus;
    if (!bus_.isConnected()) return;
    bus_.connect(service, managerPath, managerInterface, "PrepareForSleep", this,
                 SLOT(preparingForSleep(bool)));
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, managerPath, managerInterface, "GetSessionByPID");
    call << static_cast<uint>(QCoreApplication::applicationPid());
    call.setAutoStartService(false);
    auto* const reply = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        const QDBusPendingReply<QDBusObjectPath> session = *reply;
        // A program that a service manager has started is in no session; then every lock counts.
        followLocks(session.isValid() ? session.value() : QDBusObjectPath());
        reply->deleteLater();
    });
}

void SessionWatch::followLocks(const QDBusObjectPath& session) {
    bus_.connect(service, session.path(), "org.freedesktop.login1.Session", "Lock", this, SLOT(locked()));
}

} // namespace kelvinbar
