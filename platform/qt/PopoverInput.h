#pragma once

#include <QEvent>
#include <QWindow>

namespace kelvinbar {

/// Port: how the window of a popover stands above others and gets the user's input. Main thread.
class PopoverInput {
  public:
    virtual ~PopoverInput() = default;
    [[nodiscard]] virtual Qt::WindowFlags windowFlags() const = 0;
    /// Gives the window, which is on the screen, keyboard and pointer.
    virtual void take(QWindow& window) = 0;
    virtual void giveBack(QWindow& window) = 0;
    /// Whether an event of the window tells that the user turns to something else.
    [[nodiscard]] virtual bool turnsElsewhere(const QWindow& window, const QEvent& event) const = 0;
};

} // namespace kelvinbar
