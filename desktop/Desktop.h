#pragma once

#include "base/Finding.h"
#include "shell/LoginItemManager.h"
#include "shell/ShellPorts.h"
#include "shell/StatusMenuItems.h"
#include "shell/SystemSymbols.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QGuiApplication;

/// The desktop that the program runs on. One interface covers Linux and macOS: the build selects the folder
/// that implements it, and the rest of the program does not know which.
///
/// The composition root calls `handOverWithoutDisplay` and `makeApplication` first, because a desktop needs
/// the toolkit, then `makeDesktop`, `handOverToRunningInstance` and `setHandlers`. Every reference that a
/// Desktop returns is valid as long as the Desktop.
///
/// Limits: one Desktop per process, main thread only. Pitfall: until `setHandlers` is called, requests of the
/// desktop, such as those of a second instance, are dropped.
namespace kelvinbar {

class KelvinbarStore;
class Log;
class PopoverInput;
class QtScreens;
class UserDefaults;

/// How the program was started.
struct ProgramStart {
    std::string name;       ///< the program's file name
    bool isAtLogin = false; ///< by the session: opens nothing by itself
};

/// Called by the desktop. Main thread.
struct DesktopHandlers {
    std::function<std::vector<PinnedReading>()> pinnedReadings;
    std::function<void()> openPanel; ///< leaves a panel that is open as it is
    std::function<void()> refresh;   ///< reads all sensors
    std::function<void()> copy;      ///< copies a snapshot of the readings to the clipboard
    std::function<void()> openAbout; ///< opens the panel with what it says about the program
    std::function<void()> quit;
};

/// The services of a desktop. Main thread.
class Desktop {
  public:
    virtual ~Desktop() = default;
    /// Makes this process the user's only instance. If another one runs, does what `handOverWithoutDisplay`
    /// does: of two simultaneous starts, one arrives here.
    virtual std::optional<int> handOverToRunningInstance() = 0;
    virtual void setHandlers(DesktopHandlers handlers) = 0;

    /// Lets other programs of the user see what `store` knows, where the desktop has a way for that. Call
    /// after `setHandlers`. It ends when the handlers are taken away, up to which the store must live.
    virtual void offerToOtherPrograms(KelvinbarStore& /*store*/) {}

    virtual Application& application() = 0;
    virtual StatusBar& statusBar() = 0;
    virtual LoginItemService& loginItemService() = 0;
    virtual PopoverInput& popoverInput() = 0;
    virtual QtScreens& screens() = 0;
    virtual RepeatingTimers& timers() = 0;
    virtual UserDefaults& userDefaults() = 0;

    /// The file with the preferences, for people.
    [[nodiscard]] virtual std::string preferencesPlace() const = 0;
    /// Waits until the preferences are written, at most `limit`.
    virtual void flushUserDefaults(std::chrono::milliseconds limit) = 0;
    /// Whether the user has enabled reduced motion.
    [[nodiscard]] virtual bool prefersReducedMotion() const = 0;
    /// Whether the user has asked for more contrast.
    [[nodiscard]] virtual bool prefersMoreContrast() const = 0;

    /// Empty if the system has no symbols.
    [[nodiscard]] virtual SystemSymbols systemSymbols() const { return {}; }

    /// Of the system font's rounded design; empty if the system has none.
    [[nodiscard]] virtual std::string roundedFontFile() const { return {}; }
};

/// If another instance runs for this user, asks it to open its panel, or tells the user why that is not
/// possible. Returns the exit status, or no value if the start goes on. Opens no display, so that a start
/// without one can hand over.
std::optional<int> handOverWithoutDisplay(const ProgramStart& start, Log& log);

/// What the session has for the program `name`: its tray, where its status item is, and how the panel is
/// drawn. Opens no window and leaves a running instance alone. Needs no application object. May wait for
/// replies, at most a few seconds.
std::vector<FindingSection> desktopFindings(const std::string& name, Log& log);

/// Creates the toolkit's application object, of the class that the desktop needs. Removes the toolkit's
/// options from the arguments. `argc` and `argv` must outlive the result.
std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& log);

/// `command` starts the program at login. The log must outlive the result.
std::unique_ptr<Desktop> makeDesktop(const ProgramStart& start, const std::vector<std::string>& command,
                                     Log& log);

} // namespace kelvinbar
