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

/// Port: a timer that fires on the main thread until it is invalidated or destroyed, whatever else the main
/// thread is occupied with (an open menu, a panel being scrolled).
class RepeatingTimer {
  public:
    virtual ~RepeatingTimer() = default;
    virtual void invalidate() = 0;
};

/// Port: makes timers. Main thread.
class RepeatingTimers {
  public:
    virtual ~RepeatingTimers() = default;
    /// Each firing may come up to `tolerance` late.
    virtual std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                                  std::chrono::milliseconds tolerance,
                                                  std::function<void()> block) = 0;
};

/// Port: the screens, by the parts of them that no bar or dock covers. Main thread.
class Screens {
  public:
    virtual ~Screens() = default;
    /// The main screen's, where there is one.
    [[nodiscard]] virtual std::optional<Rect> mainVisibleFrame() const = 0;
    [[nodiscard]] virtual std::vector<Rect> visibleFrames() const = 0;
};

/// Port: the process as the desktop sees it. Main thread.
class Application {
  public:
    virtual ~Application() = default;
    /// A program that has neither a place among the running applications nor a menu.
    virtual void becomeAccessory() = 0;
};

/// What the delegate works with. All of it outlives the delegate.
struct ShellPorts {
    Application& application;
    StatusBar& statusBar;
    Popover& popover;
    PopoverContentFactory& contentFactory;
    RepeatingTimers& timers;
    const Screens& screens;
    MainQueue& mainQueue;
    NotificationCenter& notifications;
};

} // namespace kelvinbar
