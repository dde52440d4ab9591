#pragma once

#include "shell/LoginItemManager.h"
#include "shell/ShellPorts.h"
#include "shell/SystemSymbols.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QGuiApplication;

namespace kelvinbar {

class Log;
class PopoverInput;
class UserDefaults;

/// A pinned reading as a status item may show it beside its title.
struct PinnedReading {
    std::string name;
    std::string value;        ///< with its unit
    std::string compactValue; ///< as in the title

    friend bool operator==(const PinnedReading&, const PinnedReading&) = default;
};

/// What the desktop asks of the program. Main thread.
struct DesktopHandlers {
    std::function<std::vector<PinnedReading>()> pinnedReadings;
    std::function<void()> openPanel;
    std::function<void()> quit;
};

/// What differs from desktop to desktop. Main thread.
class Desktop {
  public:
    virtual ~Desktop() = default;
    /// Whether another instance of the program runs for this user. That one then opens its panel.
    virtual bool handOverToRunningInstance() = 0;
    virtual void setHandlers(DesktopHandlers handlers) = 0;
    virtual Application& application() = 0;
    virtual StatusBar& statusBar() = 0;
    virtual LoginItemService& loginItemService() = 0;
    virtual PopoverInput& popoverInput() = 0;
    virtual UserDefaults& userDefaults() = 0;
    /// Whether the user has asked the desktop for less motion.
    [[nodiscard]] virtual bool prefersReducedMotion() const = 0;

    /// Empty for a system without symbols of its own.
    [[nodiscard]] virtual SystemSymbols systemSymbols() const { return {}; }
};

/// The toolkit's application object, as the desktop needs it. Removes the toolkit's options from the
/// arguments.
std::unique_ptr<QGuiApplication> makeApplication(int& argc, char** argv, Log& log);

/// The desktop that the program runs on. `name` is the program's; `command` starts it again. The log outlives
/// the desktop.
std::unique_ptr<Desktop> makeDesktop(const std::string& name, const std::vector<std::string>& command,
                                     Log& log);

} // namespace kelvinbar
