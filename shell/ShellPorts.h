#pragma once

#include "base/NotificationCenter.h"
#include "base/Queues.h"
#include "shell/Popover.h"
#include "shell/StatusItem.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kelvinbar {

/// Port: a timer that fires until it is invalidated or destroyed, also while the user holds a menu open or
/// scrolls. Main thread.
class RepeatingTimer {
  public:
    virtual ~RepeatingTimer() = default;
    virtual void invalidate() = 0;
};

/// Port: creates timers. Main thread.
class RepeatingTimers {
  public:
    virtual ~RepeatingTimers() = default;
    /// Calls `block` every `interval`, each time at most `tolerance` late.
    virtual std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                                  std::chrono::milliseconds tolerance,
                                                  std::function<void()> block) = 0;
};

/// Port: the parts of all screens that no bar or dock covers. Main thread.
class Screens {
  public:
    virtual ~Screens() = default;
    /// No value if there is no main screen.
    [[nodiscard]] virtual std::optional<Rect> mainVisibleFrame() const = 0;
    [[nodiscard]] virtual std::vector<Rect> visibleFrames() const = 0;
    /// Calls `handler` when a screen appears, vanishes or changes its frames.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

/// Port: the process as the desktop sees it. Main thread.
class Application {
  public:
    virtual ~Application() = default;
    /// Removes the program from the list of running applications (Dock, taskbar), and its menu.
    virtual void becomeAccessory() = 0;

    /// Whether readings are in view, pinned or in the open panel, and so have to be read on time. A system
    /// that slows down programs without windows must not do so then. Not in view at first.
    virtual void setReadingsInView(bool /*areInView*/) {}
};

/// What the delegate works with. All references must outlive it.
struct ShellPorts {
    Application& application;
    StatusBar& statusBar;
    Popover& popover;
    PopoverContentFactory& contentFactory;
    RepeatingTimers& timers;
    Screens& screens;
    MainQueue& mainQueue;
    NotificationCenter& notifications;
};

} // namespace kelvinbar
