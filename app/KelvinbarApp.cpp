#include "app/KelvinbarApp.h"

#include "app/Doctor.h"
#include "app/LazyPanel.h"
#include "base/WorkerQueue.h"
#include "desktop/Desktop.h"
#include "desktop/qt/QtMainQueue.h"
#include "desktop/qt/QtPopover.h"
#include "desktop/qt/QtScreens.h"
#include "desktop/qt/TerminationSignals.h"
#include "process/StandardErrorSink.h"
#include "process/StandardStreams.h"
#include "qt/Clipboard.h"
#include "shell/AppDelegate.h"
#include "store/MenuBarText.h"

#include <QGuiApplication>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

namespace {

/// A full refresh and a refresh of the pinned readings may run at the same time; closing the sources comes
/// last.
constexpr std::size_t mostBackgroundThreads = ReadWatch::mostSilent + 3;

/// How long quitting waits: together less than a second.
constexpr std::chrono::milliseconds preferencesLimit{400};
constexpr std::chrono::milliseconds closingLimit{400};

std::vector<PinnedReading> pinnedReadings(const KelvinbarStore& store) {
    std::vector<PinnedReading> pinned;
    for (const SMCReading& reading : store.menuBarReadings()) {
        pinned.push_back({reading.key, reading.name, reading.displayValue(), compactMenuBarValue(reading)});
    }
    return pinned;
}

/// The command that starts the program at login.
std::vector<std::string> startCommand(const std::optional<std::string>& machineName) {
    std::vector<std::string> command{QCoreApplication::applicationFilePath().toStdString(), "--autostart"};
    if (machineName) command.push_back(*machineName);
    return command;
}

ProgramStart programStart(const ProgramDescription& program, const ProgramOptions& options) {
    return {.name = program.name, .isAtLogin = options.isAtLogin};
}

/// The exit status of a start that ends before a display is opened, which a start from another machine or at
/// a set time does not have.
std::optional<int> statusWithoutDisplay(const ProgramOptions& options, const ProgramDescription& program,
                                        Log& log) {
    if (mayHaveToolkitOptions(options)) return std::nullopt;
    if (const auto status = refusedArguments(options, program)) return status;
    return handOverWithoutDisplay(programStart(program, options), log);
}

ProgramFacts programFacts(const Desktop& desktop) {
    return {.version = KELVINBAR_VERSION,
            .author = KELVINBAR_AUTHOR,
            .contact = KELVINBAR_CONTACT,
            .donationPage = KELVINBAR_DONATION_PAGE,
            .preferencesPlace = desktop.preferencesPlace(),
            .program = QCoreApplication::applicationFilePath().toStdString()};
}

/// Ends the program at once if a thread is stuck in a driver: it cannot be ended, and still uses the machine
/// and the log. Everything else has ended before.
void leaveStuckThreadsBehind(WorkerQueue& backgroundQueue, int status, Log& log) {
    if (backgroundQueue.finish(closingLimit)) return;
    log.write(LogCategory::keys, LogLevel::warning, "a sensor does not answer; ending without it");
    std::_Exit(status);
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
                                           .timers = desktop.timers(),
                                           .screens = desktop.screens(),
                                           .mainQueue = mainQueue,
                                           .notifications = notifications},
                                          {.machine = machine,
                                           .defaults = desktop.userDefaults(),
                                           .notifications = notifications,
                                           .mainQueue = mainQueue,
                                           .backgroundQueue = backgroundQueue,
                                           .wallClock = wallClock,
                                           .absent = absentSelections(machine)})) {}

    /// What becomes of pins and hidden keys without a reading.
    [[nodiscard]] AbsentSelections absentSelections(const Machine& machine) {
        if (!machine.devicesComeAndGo) return {};
        return {desktop.userDefaults(), wallClock, log};
    }

    Log& log;
    Desktop& desktop;
    NotificationCenter notifications;
    QtMainQueue mainQueue;
    WorkerQueue backgroundQueue{mostBackgroundThreads};
    SystemWallClock wallClock;
    LoginItemManager loginItem{desktop.loginItemService()};
    LazyPanelFactory panels{{.loginItem = loginItem,
                             .close = {},
                             .prefersReducedMotion = [this] { return desktop.prefersReducedMotion(); },
                             .prefersMoreContrast = [this] { return desktop.prefersMoreContrast(); },
                             .systemSymbols = desktop.systemSymbols(),
                             .roundedFontFile = [this] { return desktop.roundedFontFile(); },
                             .program = programFacts(desktop)},
                            log};
    QtPopover popover{desktop.popoverInput(), desktop.screens(), log};
    std::shared_ptr<AppDelegate> appDelegate;
};

} // namespace

int KelvinbarApp::run(int& argc, char** argv, const ProgramDescription& program,
                      const MachineMaker& makeMachine) {
    openClosedStandardStreams();
    letWritesFail();
    ProgramOptions options = programOptions(argc, argv);
    if (const auto status = answeredOptions(options, program)) return *status;
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    if (options.wantsDoctor) {
        return examine(program.name, {.isJson = options.format == "json", .hasOwnCost = options.wantsOwnCost},
                       makeMachine({}, log), log);
    }
    if (const auto status = statusWithoutDisplay(options, program, log)) return *status;
    const auto application = makeApplication(argc, argv, log);
    options = programOptions(argc, argv);
    if (const auto status = refusedArguments(options, program)) return *status;
    const auto machineName = chosenMachineName(options);
    QGuiApplication::setApplicationName(QString::fromStdString(program.name));
    QGuiApplication::setDesktopFileName("org.kelvinbar.Kelvinbar");
    const auto desktop = makeDesktop(programStart(program, options), startCommand(machineName), log);
    if (const auto status = desktop->handOverToRunningInstance()) return *status;

    const Machine machine = makeMachine(machineName ? *machineName : program.usualMachineName, log);
    Parts parts(*desktop, machine, log);
    AppDelegate& delegate = *parts.appDelegate;
    desktop->setHandlers({.pinnedReadings = [&delegate] { return pinnedReadings(delegate.store()); },
                          .openPanel = [&delegate] { delegate.openPopover(); },
                          .refresh = [&delegate] { delegate.store().refresh(false); },
                          .copy = [&delegate] { copyToClipboard(delegate.store().exportText()); },
                          .openAbout =
                              [&delegate, &parts] {
                                  delegate.openPopover();
                                  parts.panels.showAbout();
                              },
                          .quit = [] { QGuiApplication::quit(); }});
    desktop->offerToOtherPrograms(delegate.store());
    delegate.applicationDidFinishLaunching();
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    desktop->setHandlers({});
    desktop->flushUserDefaults(preferencesLimit);
    leaveStuckThreadsBehind(parts.backgroundQueue, status, log);
    return status;
}

} // namespace kelvinbar
