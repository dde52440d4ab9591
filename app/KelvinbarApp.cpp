#include "app/KelvinbarApp.h"

#include "app/LazyPanel.h"
#include "base/WorkerQueue.h"
#include "desktop/Desktop.h"
#include "desktop/qt/QtMainQueue.h"
#include "desktop/qt/QtPopover.h"
#include "desktop/qt/QtScreens.h"
#include "desktop/qt/QtTimers.h"
#include "shell/AppDelegate.h"
#include "store/MenuBarText.h"

#include <QGuiApplication>
#include <iostream>
#include <vector>

namespace kelvinbar {

namespace {

/// A full refresh and one of the pinned readings may run at once.
constexpr std::size_t backgroundThreads = 2;

void report(const std::string& message) { std::cerr << "kelvinbar: " + message + "\n"; }

std::vector<PinnedReading> pinnedReadings(const KelvinbarStore& store) {
    std::vector<PinnedReading> pinned;
    for (const SMCReading& reading : store.menuBarReadings()) {
        pinned.push_back({reading.name, reading.displayValue(), compactMenuBarValue(reading)});
    }
    return pinned;
}

/// The program as the system starts it again at login.
std::vector<std::string> startCommand() { return {QCoreApplication::applicationFilePath().toStdString()}; }

/// The parts that live as long as the program, in the order in which they need each other.
struct Parts {
    Parts(Desktop& desktopOfUser, const Machine& machine)
        : desktop(desktopOfUser)
        , appDelegate({.application = desktop.application(),
                       .statusBar = desktop.statusBar(),
                       .popover = popover,
                       .contentFactory = panels,
                       .timers = timers,
                       .screens = screens,
                       .mainQueue = mainQueue,
                       .notifications = notifications},
                      {.machine = machine,
                       .defaults = desktop.userDefaults(),
                       .notifications = notifications,
                       .mainQueue = mainQueue,
                       .backgroundQueue = backgroundQueue,
                       .wallClock = wallClock}) {}

    Desktop& desktop;
    NotificationCenter notifications;
    QtMainQueue mainQueue;
    WorkerQueue backgroundQueue{backgroundThreads};
    SystemWallClock wallClock;
    QtTimers timers;
    QtScreens screens;
    LoginItemManager loginItem{desktop.loginItemService()};
    LazyPanelFactory panels{{.loginItem = loginItem,
                             .close = {},
                             .prefersReducedMotion = [this] { return desktop.prefersReducedMotion(); },
                             .systemSymbols = desktop.systemSymbols()}};
    QtPopover popover{desktop.popoverInput()};
    AppDelegate appDelegate;
};

} // namespace

int KelvinbarApp::run(int& argc, char** argv, const Machine& machine, const std::string& name) {
    const auto application = makeApplication(argc, argv);
    QGuiApplication::setApplicationName(QString::fromStdString(name));
    QGuiApplication::setDesktopFileName("org.kelvinbar.Kelvinbar");
    const auto desktop = makeDesktop(name, startCommand(), report);
    if (desktop->handOverToRunningInstance()) return 0;

    Parts parts(*desktop, machine);
    AppDelegate& delegate = parts.appDelegate;
    desktop->setHandlers({.pinnedReadings = [&delegate] { return pinnedReadings(delegate.store()); },
                          .openPanel = [&delegate] { delegate.openPopover(); },
                          .quit = [] { QGuiApplication::quit(); }});
    delegate.applicationDidFinishLaunching();
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    desktop->setHandlers({});
    return status;
}

} // namespace kelvinbar
