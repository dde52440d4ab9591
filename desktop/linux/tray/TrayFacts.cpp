#include "desktop/linux/tray/TrayFacts.h"

#include "desktop/linux/tray/StatusNotifierWatcher.h"

#include <QDBusMessage>
#include <QStringList>
#include <algorithm>

namespace kelvinbar {

namespace {

QDBusMessage answer(const QDBusConnection& bus, QDBusMessage question) {
    constexpr int mostMilliseconds = 500;
    question.setAutoStartService(false);
    return bus.call(question, QDBus::Block, mostMilliseconds);
}

/// The unique name of who owns `name`; empty if nobody does.
QString ownerOf(const QDBusConnection& bus, const QString& name) {
    constexpr auto busService = "org.freedesktop.DBus";
    QDBusMessage question =
        QDBusMessage::createMethodCall(busService, "/org/freedesktop/DBus", busService, "GetNameOwner");
    question << name;
    return answer(bus, question).arguments().value(0).toString();
}

std::optional<bool> isRegistered(const QDBusConnection& bus, const QString& owner) {
    const auto items = registeredItemsIn(answer(bus, registeredItemsQuestion()));
    if (!items) return std::nullopt;
    return std::ranges::any_of(*items, [&](const QString& item) { return isItemOf(item, owner); });
}

} // namespace

TrayFacts askForTray(const QDBusConnection& bus, const QString& name) {
    TrayFacts facts;
    facts.hasBus = bus.isConnected();
    if (!facts.hasBus) return facts;
    const QString owner = ownerOf(bus, name);
    facts.isRunning = owner.startsWith(':');
    const auto process = watcherProcessIn(answer(bus, watcherProcessQuestion()));
    if (!process) return facts;
    facts.watcherProcess = processName(*process);
    facts.hasHost = saysThatAHostIsThere(answer(bus, hostQuestion()));
    if (facts.isRunning) facts.isRegistered = isRegistered(bus, owner);
    return facts;
}

} // namespace kelvinbar
