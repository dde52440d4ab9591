#include "desktop/Desktop.h"
#include "desktop/linux/AutostartEntry.h"
#include "desktop/linux/FocusInput.h"
#include "desktop/linux/LayerShell.h"
#include "desktop/linux/LayerWindowSystem.h"
#include "desktop/linux/LinuxScreens.h"
#include "desktop/linux/MotionPreference.h"
#include "desktop/linux/PlatformChoice.h"
#include "desktop/linux/PreferencesFile.h"
#include "desktop/linux/RunningInstance.h"
#include "desktop/linux/SessionWatch.h"
#include "desktop/linux/TrayItem.h"
#include "desktop/linux/WindowSystem.h"
#include "desktop/linux/XEmbedTray.h"
#include "desktop/linux/x11/X11Session.h"
#include "desktop/qt/TerminationSignals.h"

#include <QGuiApplication>
#include <QPalette>
#include <QProcess>
#include <array>
#include <cstdio>
#include <optional>
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

bool hasDarkColors() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

/// The program's name on the session bus, which is also that of its desktop entry.
QString busName(const std::string& name) {
    return name == "kelvinbar" ? "org.kelvinbar.Kelvinbar" : "org.kelvinbar.Demo";
}

/// Whether the desktop's panel is Plasma's, which reports clicks in the compositor's coordinates on Wayland.
bool isPlasma() { return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains("KDE"); }

FocusInput::WindowSystem windowSystem(const X11Session* x11, const std::optional<LayerShell>& layerShell) {
    if (!layerShell) return popoverWindowSystem(x11);
    return layerWindowSystem(*layerShell, isPlasma() ? LayerOutput::ofPlace : LayerOutput::inUse);
}

ClickReports clickReports(const std::optional<LayerShell>& layerShell) {
    return layerShell && isPlasma() ? ClickReports::exact : ClickReports::asHint;
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
        , layerShell_(layerShellOfApplication(log))
        , instance_(bus_, busName(name), [this] { openPanel(); })
        , statusBar_(bus_,
                     trayStyle(qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString(), hasDarkColors()),
                     handlers_,
                     {.placeOfClick = [this](QPoint place) { return screens_.placeOfClick(place); },
                      .visibleFrameAround =
                          [this](const Rect& place) { return screens_.around(place).visibleFrame; },
                      .takesClick = [this] { return popoverInput_.takesDismissingPress(); }},
                     log)
        , autostart_(userAutostartFolder(), busName(name).toStdString(), command,
                     {openAutostartSettings, ringBell}, log)
        , userDefaults_(QString::fromStdString(name), log)
        , motion_(bus_)
        , signals_([this] { quit(); }) {
        if (layerShell_ && !isPlasma()) screens_.setPanelCorner(loadPanelCorner(userDefaults_));
    }

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

    QtScreens& screens() override { return screens_; }

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
    std::unique_ptr<X11Session> x11_ = X11Session::ofApplication();
    std::optional<LayerShell> layerShell_;
    LinuxScreens screens_{x11_.get(), clickReports(layerShell_)};
    FocusInput popoverInput_{windowSystem(x11_.get(), layerShell_)};
    RunningInstance instance_;
    TrayApplication application_;
    TrayStatusBar statusBar_;
    AutostartEntry autostart_;
    PreferencesFile userDefaults_;
    MotionPreference motion_;
    SessionWatch session_{QDBusConnection::systemBus(), [this] { popoverInput_.userLeaves(); }};
    TerminationSignals signals_;
};

} // namespace

std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& log) {
    const PlatformChoice platform([&log] { return offersLayerShell(log); });
    return makeTrayApplication(argc, argv, log);
}

std::unique_ptr<Desktop> makeDesktop(const std::string& name, const std::vector<std::string>& command,
                                     Log& log) {
    return std::make_unique<LinuxDesktop>(name, command, log);
}

} // namespace kelvinbar
