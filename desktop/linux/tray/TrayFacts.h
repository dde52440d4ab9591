#pragma once

#include <QDBusConnection>
#include <QString>
#include <optional>
#include <string>

namespace kelvinbar {

/// Which trays the session has, and whether the program is in one.
struct TrayFacts {
    std::string desktopNames;   ///< the value of XDG_CURRENT_DESKTOP
    bool hasBusAddress = false; ///< the environment names a session bus, whether or not it can be reached
    bool hasBus = false;        ///< a session bus; without one only `hasXEmbedTray` is known
    /// The name of the watcher's process, at most 15 characters; empty if unknown. No value without one.
    std::optional<std::string> watcherProcess;
    bool hasHost = false;       ///< which shows the watcher's items
    bool hasXEmbedTray = false; ///< on the X server, of the older protocol
    bool isRunning = false;     ///< the program, on this bus
    /// Whether the watcher knows the item of the running program. No value if it does not tell.
    std::optional<bool> isRegistered;
};

/// Asks the session bus and its watcher; the program `name` is not asked and starts nothing. Waits for each
/// of four answers, at most half a second. Desktop and X server are for the caller to add.
TrayFacts askForTray(const QDBusConnection& bus, const QString& name);

} // namespace kelvinbar
