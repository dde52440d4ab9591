#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <optional>

/// The watcher of the StatusNotifierItem protocol, which keeps the list of items and hosts.
namespace kelvinbar {

inline constexpr auto watcherService = "org.kde.StatusNotifierWatcher"; ///< also its interface
inline constexpr auto watcherPath = "/StatusNotifierWatcher";

/// The call that asks the bus for the process of the watcher.
QDBusMessage watcherProcessQuestion();

/// The number of the process in the bus's answer, 0 if the bus does not know it. No value if no watcher runs.
std::optional<uint> watcherProcessIn(const QDBusMessage& reply);

/// The call that asks the watcher whether it has a host.
QDBusMessage hostQuestion();

/// The watcher's answer. True for an error: not every watcher has the property, and one that does not tell is
/// trusted to have a host.
bool saysThatAHostIsThere(const QDBusMessage& reply);

/// Asks the running watcher, and waits for it, at most half a second. False without a watcher.
bool isHostThere(const QDBusConnection& bus);

} // namespace kelvinbar
