#pragma once

#include <QRect>
#include <QWindow>
#include <functional>

namespace kelvinbar {

/// How the window of a popover can look.
enum class PopoverLook {
    plain,    ///< an opaque rectangle
    rounded,  ///< with transparent corners
    shadowed, ///< also with a shadow around it, which belongs to the window
};

/// Port: keeps the window of a popover above others, gives it the user's input, and detects when the user
/// dismisses it. Main thread.
class PopoverInput {
  public:
    virtual ~PopoverInput() = default;

    /// What the window system can draw now.
    [[nodiscard]] virtual PopoverLook look() const { return PopoverLook::plain; }

    /// Whether the window goes where it asks to be. Otherwise each resize may move it.
    [[nodiscard]] virtual bool placesWindow() const { return true; }

    /// Sets the window's flags. Call before it is shown.
    virtual void prepare(QWindow& window) = 0;

    /// Moves and resizes the window. Only `area` of it, in the window's coordinates, belongs to the popover;
    /// a shadow may surround it.
    virtual void placeWindow(QWindow& window, const QRect& frame, const QRect& /*area*/) {
        window.setGeometry(frame);
    }

    /// Gives the window keyboard and pointer input. Call once, when it is exposed after it was shown. Calls
    /// `onDismissed` when the user clicks outside or turns to another program.
    virtual void acquire(QWindow& window, std::function<void()> onDismissed) = 0;
    /// Releases the input. Call before the window is hidden.
    virtual void release(QWindow& window) = 0;
};

} // namespace kelvinbar
