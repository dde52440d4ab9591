#include "app/KelvinbarApp.h"

#include "app/LazyPanel.h"
#include "app/ProgramOptions.h"
#include "base/WorkerQueue.h"
#include "desktop/Desktop.h"
#include "desktop/qt/QtMainQueue.h"
#include "desktop/qt/QtPopover.h"
#include "desktop/qt/QtScreens.h"
#include "desktop/qt/QtTimers.h"
#include "shell/AppDelegate.h"
#include "store/MenuBarText.h"

#include <QGuiApplication>
#include <vector>

namespace kelvinbar {

namespace {

/// A full refresh and a refresh of the pinned readings may run at the same time.
constexpr std::size_t backgroundThreads = 2;

std::vector<PinnedReading> pinnedReadings(const KelvinbarStore& store) {
    std::vector<PinnedReading> pinned;
    for (const SMCReading& reading : store.menuBarReadings()) {
        pinned.push_back({reading.name, reading.displayValue(), compactMenuBarValue(reading)});
    }
    return pinned;
}

/// The command that starts the program at login.
std::vector<std::string> startCommand() { return {QCoreApplication::applicationFilePath().toStdString()}; }

/// The parts that live as long as the program. Each needs those before it.
struct Parts {
    Parts(Desktop& desktopOfUser, const Machine& machine, Log& ownLog)
        : log(ownLog)
        , desktop(desktopOfUser)
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

    Log& log;
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
                             .systemSymbols = desktop.systemSymbols()},
                            log};
    QtPopover popover{desktop.popoverInput(), log};
    AppDelegate appDelegate;
};

} // namespace

int KelvinbarApp::run(int& argc, char** argv, const MachineMaker& makeMachine, const std::string& name) {
    const ProgramOptions options = programOptions(argc, argv);
    if (const auto status = answeredOptions(options, name)) return *status;
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto application = makeApplication(argc, argv, log);
    if (const auto status = refusedArguments(programOptions(argc, argv), name)) return *status;
    QGuiApplication::setApplicationName(QString::fromStdString(name));
    QGuiApplication::setDesktopFileName("org.kelvinbar.Kelvinbar");
    const auto desktop = makeDesktop(name, startCommand(), log);
    if (desktop->handOverToRunningInstance()) {
        log.write(LogCategory::panel, LogLevel::info, "another instance runs and opens its panel");
        return 0;
    }

    const Machine machine = makeMachine(log);
    Parts parts(*desktop, machine, log);
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
