#include "desktop/linux/SessionFindings.h"

#include "desktop/linux/session/AlertSound.h"
#include "desktop/linux/tray/TrayFacts.h"
#include "desktop/linux/tray/TrayFindings.h"
#include "desktop/linux/window/LayerShell.h"
#include "desktop/linux/window/PlatformChoice.h"
#include "desktop/linux/window/x11/X11Connection.h"
#include "desktop/linux/window/x11/XEmbedSelection.h"

#include <QDBusConnection>
#include <QtGlobal>
#include <string>

namespace kelvinbar {

namespace {

TrayFacts factsOfSession(const QString& name) {
    // Not the shared connection: that belongs to the application object, which does not exist.
    const QString connection = "kelvinbar-doctor";
    TrayFacts facts =
        askForTray(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection), name);
    QDBusConnection::disconnectFromBus(connection);
    facts.hasBusAddress = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS");
    facts.desktopNames = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString();
    const X11Connection x11 = connectToX11();
    facts.hasXEmbedTray = x11 != nullptr && hasXEmbedTray(x11.get());
    return facts;
}

Finding toolkitFinding() {
    const std::string inUse = qVersion();
    const std::string built = QT_VERSION_STR;
    return {.subject = "toolkit", .found = "Qt " + inUse + (inUse == built ? "" : ", built with " + built)};
}

} // namespace

std::vector<FindingSection> sessionFindings(const QString& name, Log& log) {
    const auto displays = displaysOfSession([&log] { return offersLayerShell(log); });
    return {{.title = "Tray", .findings = trayFindings(factsOfSession(name))},
            {.title = "Program",
             .findings = {toolkitFinding(), platformFinding(qgetenv("QT_QPA_PLATFORM"), displays),
                          alertFinding(hasThemeBell())}}};
}

} // namespace kelvinbar
