#include "desktop/linux/tray/XEmbedTray.h"

#include "base/Log.h"
#include "desktop/linux/tray/StatusNotifierWatcher.h"
#include "desktop/qt/Modules.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <utility>

namespace kelvinbar {

namespace {

XEmbedTrayModule& loadedModule() {
    static XEmbedTrayModule module;
    return module;
}

bool hasStatusNotifierTray() {
    // Not the shared connection: that belongs to the application object, which does not exist yet.
    const QString name = "kelvinbar-probe";
    const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    const bool hasTray = isHostThere(bus);
    QDBusConnection::disconnectFromBus(name);
    return hasTray;
}

} // namespace

std::unique_ptr<QGuiApplication> makeTrayApplication(int& argc, char** argv, Log& log) {
    using GetModule = void (*)(XEmbedTrayModule&);
    if (!hasStatusNotifierTray()) {
        log.write(LogCategory::tray, LogLevel::info,
                  "no StatusNotifierItem tray runs: XEmbed trays are used");
        const auto get = reinterpret_cast<GetModule>(
            moduleFunction("kelvinbar-xembed", "kelvinbarXEmbedTray", log, LogCategory::tray));
        if (get != nullptr) get(loadedModule());
    }
    const auto make = loadedModule().makeApplication;
    return std::unique_ptr<QGuiApplication>(make == nullptr ? new QGuiApplication(argc, argv)
                                                            : make(argc, argv));
}

std::unique_ptr<XEmbedTrayIcon> makeXEmbedTrayIcon(XEmbedTrayHandlers handlers) {
    const auto make = loadedModule().makeIcon;
    return std::unique_ptr<XEmbedTrayIcon>(make == nullptr ? nullptr : make(std::move(handlers)));
}

} // namespace kelvinbar
