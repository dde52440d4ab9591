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
#include <memory>
#include <optional>
#include <string>
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
std::vector<std::string> startCommand(const std::optional<std::string>& machineName) {
    std::vector<std::string> command{QCoreApplication::applicationFilePath().toStdString()};
    if (machineName) command.push_back(*machineName);
    return command;
}

/// The parts that live as long as the program. Each needs those before it.
struct Parts {
    Parts(Desktop& desktopOfUser, const Machine& machine, Log& ownLog)
        : log(ownLog)
        , desktop(desktopOfUser)
        , appDelegate(AppDelegate::create({.application = desktop.application(),
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
                                           .wallClock = wallClock})) {}

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
    std::shared_ptr<AppDelegate> appDelegate;
};

} // namespace

int KelvinbarApp::run(int& argc, char** argv, const ProgramDescription& program,
                      const MachineMaker& makeMachine) {
    ProgramOptions options = programOptions(argc, argv);
    if (const auto status = answeredOptions(options, program)) return *status;
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto application = makeApplication(argc, argv, log);
    options = programOptions(argc, argv);
    if (const auto status = refusedArguments(options, program)) return *status;
    const auto machineName = chosenMachineName(options);
    QGuiApplication::setApplicationName(QString::fromStdString(program.name));
    QGuiApplication::setDesktopFileName("org.kelvinbar.Kelvinbar");
    const auto desktop = makeDesktop(program.name, startCommand(machineName), log);
    if (desktop->handOverToRunningInstance()) {
        log.write(LogCategory::panel, LogLevel::info, "another instance runs and opens its panel");
        return 0;
    }

    const Machine machine = makeMachine(machineName ? *machineName : program.usualMachineName, log);
    Parts parts(*desktop, machine, log);
    AppDelegate& delegate = *parts.appDelegate;
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
