#include "desktop/Desktop.h"
#include "desktop/linux/AutostartEntry.h"
#include "desktop/linux/BarColors.h"
#include "desktop/linux/GrabbedInput.h"
#include "desktop/linux/MotionPreference.h"
#include "desktop/linux/PreferencesFile.h"
#include "desktop/linux/RunningInstance.h"
#include "desktop/linux/TrayItem.h"
#include "desktop/linux/XEmbedTray.h"
#include "desktop/qt/TerminationSignals.h"

#include <QGuiApplication>
#include <QProcess>
#include <array>
#include <cstdio>
#include <utility>

#include <unistd.h>

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

/// Rings the terminal's bell, if there is a terminal.
void ringBell() {
    if (isatty(STDERR_FILENO) == 1) static_cast<void>(std::fputc('\a', stderr));
}

std::string desktopNames() { return qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(); }

/// The program's name on the session bus, which is also that of its desktop entry.
QString busName(const std::string& name) {
    return name == "kelvinbar" ? "org.kelvinbar.Kelvinbar" : "org.kelvinbar.Demo";
}

/// A tray program has no taskbar entry, and continues after its last window is closed.
class TrayApplication final : public Application {
  public:
    void becomeAccessory() override { QGuiApplication::setQuitOnLastWindowClosed(false); }
};

class LinuxDesktop final : public Desktop {
  public:
    LinuxDesktop(const std::string& name, const std::vector<std::string>& command, Log& log)
        : bus_(QDBusConnection::sessionBus())
        , instance_(bus_, busName(name), [this] { openPanel(); })
        , userDefaults_(QString::fromStdString(name), log)
        , barColors_(desktopNames(), bus_, PlasmaFolders::ofThisUser())
        , statusBar_(bus_,
                     {.desktopNames = desktopNames(),
                      .colors = barColors_,
                      .userDefaults = userDefaults_,
                      .makeXEmbedIcon = makeXEmbedTrayIcon,
                      .focusRightGiven = {},
                      .hasTrayChanged = {}},
                     handlers_, log)
        , autostart_(userAutostartFolder(), busName(name).toStdString(), command,
                     {openAutostartSettings, ringBell}, log)
        , motion_(bus_)
        , signals_([this] { quit(); }) {}

    bool handOverToRunningInstance() override {
        if (instance_.isThisOne()) return false;
        instance_.activateOther();
        return true;
    }

    void setHandlers(DesktopHandlers handlers) override { handlers_ = std::move(handlers); }

    Application& application() override { return application_; }

    StatusBar& statusBar() override { return statusBar_; }

    LoginItemService& loginItemService() override { return autostart_; }

    PopoverInput& popoverInput() override { return popoverInput_; }

    UserDefaults& userDefaults() override { return userDefaults_; }

    [[nodiscard]] bool prefersReducedMotion() const override { return motion_.prefersReducedMotion(); }

  private:
    void openPanel() const {
        if (handlers_.openPanel) handlers_.openPanel();
    }

    void quit() const {
        if (handlers_.quit) handlers_.quit();
    }

    DesktopHandlers handlers_;
    QDBusConnection bus_;
    RunningInstance instance_;
    TrayApplication application_;
    PreferencesFile userDefaults_;
    BarColors barColors_;
    TrayStatusBar statusBar_;
    AutostartEntry autostart_;
    GrabbedInput popoverInput_;
    MotionPreference motion_;
    TerminationSignals signals_;
};

} // namespace

std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& log) {
    // Wayland does not let windows choose their position. Use the session's X server if there is one.
    const bool isChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!isChosen && !qEnvironmentVariableIsEmpty("DISPLAY")) qputenv("QT_QPA_PLATFORM", "xcb");
    return makeTrayApplication(argc, argv, log);
}

std::unique_ptr<Desktop> makeDesktop(const std::string& name, const std::vector<std::string>& command,
                                     Log& log) {
    return std::make_unique<LinuxDesktop>(name, command, log);
}

} // namespace kelvinbar
