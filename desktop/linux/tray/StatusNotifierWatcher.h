#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>

/// The watcher of the StatusNotifierItem protocol, which keeps the list of items and hosts.
namespace kelvinbar {

inline constexpr auto watcherService = "org.kde.StatusNotifierWatcher"; ///< also its interface
inline constexpr auto watcherPath = "/StatusNotifierWatcher";

/// The call that asks the bus for the process of the watcher.
QDBusMessage watcherProcessQuestion();

/// The number of the process in the bus's answer, 0 if the bus does not know it. No value if no watcher runs.
std::optional<uint> watcherProcessIn(const QDBusMessage& reply);

/// The name of a process, at most 15 characters. Empty if unknown.
std::string processName(uint process);

/// The call that asks the watcher whether it has a host.
QDBusMessage hostQuestion();

/// The watcher's answer. True for an error: not every watcher has the property, and one that does not tell is
/// trusted to have a host.
bool saysThatAHostIsThere(const QDBusMessage& reply);

/// The call that asks the watcher for its items.
QDBusMessage registeredItemsQuestion();

/// The items in the watcher's answer. No value for an error: not every watcher has the property.
std::optional<QStringList> registeredItemsIn(const QDBusMessage& reply);

/// Whether a watcher's name of an item, which may have the item's path behind it, is that of `service`.
bool isItemOf(const QString& item, const QString& service);

/// Asks the running watcher, and waits for it, at most half a second. False without a watcher.
bool isHostThere(const QDBusConnection& bus);

} // namespace kelvinbar
