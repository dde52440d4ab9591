#include "desktop/Desktop.h"
#include "desktop/linux/SessionFindings.h"
#include "desktop/linux/session/AlertSound.h"
#include "desktop/linux/session/AutostartService.h"
#include "desktop/linux/session/BusKeeper.h"
#include "desktop/linux/session/InstanceLock.h"
#include "desktop/linux/session/NoTrayNotice.h"
#include "desktop/linux/session/ProgramOnBus.h"
#include "desktop/linux/session/RunningInstance.h"
#include "desktop/linux/session/RuntimeFolder.h"
#include "desktop/linux/session/SecondStart.h"
#include "desktop/linux/session/SessionRestore.h"
#include "desktop/linux/session/SessionWatch.h"
#include "desktop/linux/settings/DesktopPreference.h"
#include "desktop/linux/settings/PreferencesFile.h"
#include "desktop/linux/tray/BarColors.h"
#include "desktop/linux/tray/TrayItem.h"
#include "desktop/linux/tray/XEmbedTray.h"
#include "desktop/linux/window/DisplayFailure.h"
#include "desktop/linux/window/FocusInput.h"
#include "desktop/linux/window/LayerShell.h"
#include "desktop/linux/window/LayerWindowSystem.h"
#include "desktop/linux/window/LinuxScreens.h"
#include "desktop/linux/window/PlatformChoice.h"
#include "desktop/linux/window/WindowSystem.h"
#include "desktop/linux/window/x11/X11Session.h"
#include "desktop/qt/QtTimers.h"
#include "desktop/qt/TerminationSignals.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <array>
#include <optional>
#include <utility>

namespace kelvinbar {

namespace {

/// Settings programs of the desktops, with the argument that opens the page for programs started at login.
constexpr std::array<std::pair<const char*, const char*>, 6> autostartSettings{{
    {"gnome-session-properties", ""},
    {"systemsettings", "kcm_autostart"},
    {"xfce4-session-settings", ""},
    {"lxqt-config-session", ""},
    {"mate-session-properties", ""},
    {"cinnamon-settings", "startup"},
}};

void openAutostartSettings() {
    for (const auto& [program, argument] : autostartSettings) {
        const QStringList arguments = *argument == '\0' ? QStringList() : QStringList(argument);
        if (QProcess::startDetached(program, arguments)) return;
    }
}

std::string desktopNames() { return qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(); }

AutostartEntry autostartEntry(const QString& name, const std::vector<std::string>& command,
                              AutostartEntry::Report report) {
    return {userAutostartFolder(),
            name.toStdString(),
            command,
            {.path = qEnvironmentVariable("PATH").toStdString(), .desktopNames = desktopNames()},
            std::move(report)};
}

/// The program's name on the session bus, which is also that of its desktop entry.
QString busName(const std::string& name) {
    return name == "kelvinbar" ? "org.kelvinbar.Kelvinbar" : "org.kelvinbar.Demo";
}

/// Whether the user has preferences of the program `name`. There are none before its first start.
bool hasPreferences(const std::string& name) {
    return QFile::exists(preferencesPath(QString::fromStdString(name)));
}

/// Whether the desktop's panel is Plasma's, which tells where the item is, also on Wayland.
bool isPlasma() { return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains("KDE"); }

FocusInput::WindowSystem windowSystem(const X11Session* x11, const std::optional<LayerShell>& layerShell) {
    if (!layerShell) return popoverWindowSystem(x11);
    return layerWindowSystem(*layerShell, isPlasma() ? LayerOutput::ofPlace : LayerOutput::inUse);
}

ClickReports clickReports(const std::optional<LayerShell>& layerShell) {
    return layerShell && isPlasma() ? ClickReports::ofPlasma : ClickReports::hint;
}

/// A tray program has no taskbar entry, and continues after its last window is closed.
class TrayApplication final : public Application {
  public:
    void becomeAccessory() override { QGuiApplication::setQuitOnLastWindowClosed(false); }
};

class LinuxDesktop final : public Desktop {
  public:
    LinuxDesktop(const ProgramStart& start, const std::vector<std::string>& command, Log& log)
        : log_(log)
        , bus_(QDBusConnection::sessionBus())
        , sessionBus_(bus_, QDBusConnection::SessionBus, log)
        , systemBus_(QDBusConnection::systemBus(), QDBusConnection::SystemBus, log)
        , layerShell_(layerShellOfApplication(log))
        , start_{.bus = bus_,
                 .name = busName(start.name),
                 .place = ownPlace(),
                 .isAtLogin = start.isAtLogin || qGuiApp->isSessionRestored()}
        , lock_(instanceLockFile(start.name))
        , instance_(bus_, start_.name,
                    [this](const FocusRight& right) {
                        popoverInput_.grantFocus(right);
                        openPanel();
                    })
        , isFirstStart_(!hasPreferences(start.name))
        , userDefaults_(QString::fromStdString(start.name), log)
        , barColors_(desktopNames(), bus_, PlasmaFolders::ofThisUser())
        , statusBar_(bus_, trayContext(), handlers_, log)
        , autostart_([&](auto report) { return autostartEntry(start_.name, command, std::move(report)); },
                     {.openSettings = openAutostartSettings, .beep = [] { playAlert(alertWays()); }}, {}, log)
        , reducedMotion_(bus_, reducedMotionSettings())
        , moreContrast_(bus_, moreContrastSettings())
        , signals_([this] { quit(); }) {
        if (opensInCorner()) screens_.setPanelCorner(loadPanelCorner(userDefaults_));
        followBuses();
        declineSessionRestore(*qGuiApp);
        // A shutdown may take time, and a new start must not wait for it.
        QObject::connect(qGuiApp, &QGuiApplication::aboutToQuit, &sessionBus_, [this] { stepAside(); });
    }

    std::optional<int> handOverToRunningInstance() override {
        if (becomeTheOne()) return std::nullopt;
        const auto status = exitStatusOf(start_, lock_, log_);
        // The other instance may have ended in the meantime.
        if (!status) becomeTheOne();
        return status;
    }

    void setHandlers(DesktopHandlers handlers) override {
        handlers_ = std::move(handlers);
        if (!handlers_.openPanel) {
            trayNotice_ = nullptr;
            programOnBus_ = nullptr;
            return;
        }
        autostart_.renew();
        trayNotice_ = makeTrayNotice();
    }

    void offerToOtherPrograms(KelvinbarStore& store) override {
        programOnBus_ = std::make_unique<ProgramOnBus>(bus_, store, [this] { openPanel(); });
    }

    Application& application() override { return application_; }

    StatusBar& statusBar() override { return statusBar_; }

    LoginItemService& loginItemService() override { return autostart_; }

    PopoverInput& popoverInput() override { return popoverInput_; }

    QtScreens& screens() override { return screens_; }

    RepeatingTimers& timers() override { return timers_; }

    UserDefaults& userDefaults() override { return userDefaults_; }

    [[nodiscard]] std::string preferencesPlace() const override { return userDefaults_.path().toStdString(); }

    void flushUserDefaults(std::chrono::milliseconds limit) override { userDefaults_.flush(limit); }

    [[nodiscard]] bool prefersReducedMotion() const override { return reducedMotion_.isExpressed(); }

    [[nodiscard]] bool prefersMoreContrast() const override { return moreContrast_.isExpressed(); }

  private:
    TrayContext trayContext() {
        return {
            .desktopNames = desktopNames(),
            .colors = barColors_,
            .userDefaults = userDefaults_,
            .busKeeper = sessionBus_,
            .surroundings = {.placeOfClick = [this](QPoint place) { return screens_.placeOfClick(place); },
                             .visibleFrameAround =
                                 [this](const Rect& place) { return screens_.around(place).visibleFrame; },
                             .takesClick = [this] { return popoverInput_.takesDismissingPress(); }},
            .makeXEmbedIcon = makeXEmbedTrayIcon,
            .desktopEntries = [this] { return cornerEntries(); },
            .focusRightGiven = [this](const FocusRight& right) { popoverInput_.grantFocus(right); }};
    }

    /// The item follows the session bus itself.
    void followBuses() {
        QObject::connect(&sessionBus_, &BusKeeper::reconnected, [this](const QDBusConnection& bus) {
            bus_ = bus;
            instance_.moveTo(bus);
            if (programOnBus_ != nullptr) programOnBus_->moveTo(bus);
            barColors_.moveTo(bus);
            reducedMotion_.moveTo(bus);
            moreContrast_.moveTo(bus);
        });
        QObject::connect(&systemBus_, &BusKeeper::reconnected,
                         [this](const QDBusConnection& bus) { session_.moveTo(bus); });
    }

    /// Whether hosts do not tell where the item is, and the panel can be in a corner.
    [[nodiscard]] bool opensInCorner() const { return layerShell_ && !isPlasma(); }

    std::vector<StatusMenuEntry> cornerEntries() {
        if (!opensInCorner()) return {};
        return panelCornerEntries(loadPanelCorner(userDefaults_), [this](PanelCorner corner) {
            storePanelCorner(userDefaults_, corner);
            screens_.setPanelCorner(corner);
        });
    }

    /// The name first: whoever holds the lock also has the name, on its session bus.
    bool becomeTheOne() {
        if (!instance_.claim()) return false;
        if (lock_.take(start_.place)) return true;
        instance_.release();
        return false;
    }

    void stepAside() {
        lock_.release();
        instance_.release();
    }

    std::unique_ptr<NoTrayNotice> makeTrayNotice() {
        const auto wait = start_.isAtLogin ? NoTrayNotice::patienceAtLogin : NoTrayNotice::patience;
        return std::make_unique<NoTrayNotice>(
            TraySituation{.command = autostart_.programWord(),
                          .isAtLogin = start_.isAtLogin,
                          .isFirstStart = isFirstStart_,
                          .hasBus = bus_.isConnected(),
                          .hasTray = [this] { return statusBar_.hasTray(); },
                          .openPanel = [this] { openPanel(); }},
            wait, log_);
    }

    void openPanel() const {
        if (handlers_.openPanel) handlers_.openPanel();
    }

    void quit() const {
        if (handlers_.quit) handlers_.quit();
    }

    Log& log_;
    DesktopHandlers handlers_;
    QDBusConnection bus_; ///< the session bus
    BusKeeper sessionBus_;
    BusKeeper systemBus_;
    std::unique_ptr<X11Session> x11_ = X11Session::ofApplication();
    std::optional<LayerShell> layerShell_;
    LinuxScreens screens_{x11_.get(), clickReports(layerShell_)};
    FocusInput popoverInput_{windowSystem(x11_.get(), layerShell_)};
    QtTimers timers_;
    SecondStart start_;
    InstanceLock lock_;
    RunningInstance instance_;
    TrayApplication application_;
    bool isFirstStart_; // before the preferences make their file
    PreferencesFile userDefaults_;
    BarColors barColors_;
    TrayStatusBar statusBar_;
    AutostartService autostart_;
    DesktopPreference reducedMotion_;
    DesktopPreference moreContrast_;
    SessionWatch session_{QDBusConnection::systemBus(), [this] { popoverInput_.userLeaves(); }};
    std::unique_ptr<NoTrayNotice> trayNotice_;
    std::unique_ptr<ProgramOnBus> programOnBus_;
    TerminationSignals signals_;
};

} // namespace

std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& log) {
    provideRuntimeFolder();
    const PlatformChoice platform([&log] { return offersLayerShell(log); });
    const DisplayFailure failure(argc, argv, log);
    return makeTrayApplication(argc, argv, log);
}

std::optional<int> handOverWithoutDisplay(const ProgramStart& start, Log& log) {
    provideRuntimeFolder();
    // Not the shared connection: that belongs to the application object, which does not exist yet.
    const QString connection = "kelvinbar-start";
    const auto status =
        exitStatusOf({.bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection),
                      .name = busName(start.name),
                      .place = ownPlace(),
                      .isAtLogin = start.isAtLogin},
                     InstanceLock(instanceLockFile(start.name)), log);
    QDBusConnection::disconnectFromBus(connection);
    return status;
}

std::vector<FindingSection> desktopFindings(const std::string& name, Log& log) {
    return sessionFindings(busName(name), log);
}

std::unique_ptr<Desktop> makeDesktop(const ProgramStart& start, const std::vector<std::string>& command,
                                     Log& log) {
    return std::make_unique<LinuxDesktop>(start, command, log);
}

} // namespace kelvinbar
