#pragma once

#include <QWindow>
#include <functional>

namespace kelvinbar {

/// Port: keeps the window of a popover above others, gives it the user's input, and detects when the user
/// dismisses it. Main thread.
class PopoverInput {
  public:
    virtual ~PopoverInput() = default;
    /// Sets the window's flags. Call before it is shown.
    virtual void prepare(QWindow& window) = 0;
    /// Gives the window keyboard and pointer input. Call when it is exposed; repeated calls are allowed.
    /// Calls `onDismissed` when the user clicks outside or turns to another program.
    virtual void acquire(QWindow& window, std::function<void()> onDismissed) = 0;
    /// Releases the input. Call before the window is hidden.
    virtual void release(QWindow& window) = 0;
};

} // namespace kelvinbar
