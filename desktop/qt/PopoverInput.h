#pragma once

#include <QWindow>
#include <functional>

namespace kelvinbar {

/// Port: how the window of a popover stands above others and gets the user's input. Main thread.
class PopoverInput {
  public:
    virtual ~PopoverInput() = default;
    /// Before the window is shown.
    virtual void prepare(QWindow& window) = 0;
    /// Gives the window, which is on the screen, keyboard and pointer, also when it has them already.
    /// `onElsewhere` is called when the user then turns to something else.
    virtual void take(QWindow& window, std::function<void()> onElsewhere) = 0;
    /// Before the window goes.
    virtual void giveBack(QWindow& window) = 0;
};

} // namespace kelvinbar
