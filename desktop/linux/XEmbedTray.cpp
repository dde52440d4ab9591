#include "desktop/linux/XEmbedTray.h"

#include "base/Log.h"
#include "desktop/qt/Modules.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <utility>

namespace kelvinbar {

namespace {

XEmbedTrayModule& loadedModule() {
    static XEmbedTrayModule module;
    return module;
}

bool isWatcherRunning() {
    // Not the shared connection: that belongs to the application object, which does not exist yet.
    const QString name = "kelvinbar-probe";
    const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    const bool isRunning =
        bus.isConnected() && bus.interface()->isServiceRegistered("org.kde.StatusNotifierWatcher");
    QDBusConnection::disconnectFromBus(name);
    return isRunning;
}

} // namespace

std::unique_ptr<QGuiApplication> makeTrayApplication(int& argc, char** argv, Log& log) {
    using GetModule = void (*)(XEmbedTrayModule&);
    if (!isWatcherRunning()) {
        log.write(LogCategory::tray, LogLevel::info,
                  "no StatusNotifierItem watcher runs: XEmbed trays are used");
        const auto get = reinterpret_cast<GetModule>(
            moduleFunction("kelvinbar-xembed", "kelvinbarXEmbedTray", log, LogCategory::tray));
        if (get != nullptr) get(loadedModule());
    }
    const auto make = loadedModule().makeApplication;
    return std::unique_ptr<QGuiApplication>(make == nullptr ? new QGuiApplication(argc, argv)
                                                            : make(argc, argv));
}

std::unique_ptr<XEmbedTrayIcon> makeXEmbedTrayIcon(std::function<void(QRect)> onActivated) {
    const auto make = loadedModule().makeIcon;
    return std::unique_ptr<XEmbedTrayIcon>(make == nullptr ? nullptr : make(std::move(onActivated)));
}

} // namespace kelvinbar
