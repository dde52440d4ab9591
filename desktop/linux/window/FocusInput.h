#pragma once

#include "desktop/linux/session/FocusRight.h"
#include "desktop/qt/PopoverInput.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Input of a popover on Linux: an ordinary window without a frame, to which the window manager gives the
/// focus. Nothing is grabbed, so the screen can be locked and the desktop's keys work while it is open. The
/// user dismisses it by turning to another window, or by a press elsewhere that leaves the focus where it is,
/// such as one on a bar.
///
/// A press on the status item that dismisses the popover is reported by the tray too: at the press, at the
/// release, or at the second press of a double-click. `takesDismissingPress` keeps that report from opening
/// the popover again.
///
/// Limits: where the window system does not report presses elsewhere, only the focus counts. A press on the
/// item that is held for long then opens the popover again, if the tray reports it at the release. Main
/// thread.
class FocusInput final : public QObject, public PopoverInput {
  public:
    struct PressHandlers {
        std::function<void(QPoint)> pressed; ///< with the pointer's place on the screen
        std::function<void()> released;
        /// For a press that is certainly not on the status item.
        std::function<void()> leaves;
    };

    /// The window system, replaceable in tests.
    struct WindowSystem {
        std::function<PopoverLook()> look;
        std::function<bool()> placesWindow;
        /// Sets what the window manager has to know. Called before each time the window is shown.
        std::function<void(QWindow&)> prepare;
        /// Asks for the focus.
        std::function<void(QWindow&, const FocusRight&)> activate;
        /// Moves and resizes the window. Only `area` of it, in its own coordinates, takes the pointer.
        std::function<void(QWindow&, const QRect& frame, const QRect& area)> placeWindow;
        /// Reports presses, wherever they are, as long as the result lives. The handlers may end it.
        std::function<std::shared_ptr<void>(PressHandlers)> watchPresses;
    };

    explicit FocusInput(WindowSystem system);

    [[nodiscard]] PopoverLook look() const override { return system_.look(); }

    [[nodiscard]] bool placesWindow() const override { return system_.placesWindow(); }

    void prepare(QWindow& window) override;
    void placeWindow(QWindow& window, const QRect& frame, const QRect& area) override;
    void acquire(QWindow& window, std::function<void()> onDismissed) override;
    void release(QWindow& window) override;

    /// The right by which the next opening asks for the focus, or the open window if it is without it. Used
    /// once.
    void grantFocus(const FocusRight& right);

    /// Dismisses the popover because the user turns to something else, such as another session.
    void userLeaves();

    /// Whether a click that the tray reports now is the press that has just dismissed the popover. True once.
    bool takesDismissingPress();

  private:
    /// The press that dismissed the popover. When the focus was lost, the press that caused it may not have
    /// been reported yet.
    enum class DismissingPress { none, unreported, held, released };

    void activeChanged();
    void pressed(QPoint place);
    void released();
    void dismiss(DismissingPress press);
    void setDismissingPress(DismissingPress press);
    [[nodiscard]] bool continuesDismissal(QPoint place) const;

    WindowSystem system_;
    FocusRight right_;
    QPointer<QWindow> window_; ///< null while no window has the input
    QRect area_;               ///< the popover, in the window's coordinates
    std::function<void()> onDismissed_;
    std::shared_ptr<void> presses_;
    bool hadFocus_ = false; ///< the window, since it was opened
    QPoint lastPress_;      ///< that was elsewhere
    DismissingPress dismissingPress_ = DismissingPress::none;
    QTimer reportWait_; ///< for the tray's report of a press that is not held any more
};

} // namespace kelvinbar
