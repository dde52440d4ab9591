#pragma once

#include "desktop/qt/PopoverInput.h"
#include "shell/Geometry.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace kelvinbar {

/// Input of a popover on macOS: the window floats above others, and the program is active while it is open.
/// The user dismisses it by activating another program, or with a mouse press in one that does not become
/// active, such as another item of the menu bar.
///
/// From macOS 27 on a press on the program's own status item counts as one in another program, and comes
/// before or after the click that opens or closes the popover. It is known by its place.
///
/// Pitfall: activation and hiding take effect later, so the system's notifications have to be matched with
/// what was requested. Main thread.
class ActiveInput final : public PopoverInput {
  public:
    /// The calls to the system, replaceable in tests.
    struct Requests {
        std::function<void()> activate; ///< makes this program active
        std::function<void()> hide;     ///< makes the previously active program active
        /// Calls `onPress` with the place of every mouse press in another program as long as the result
        /// lives.
        std::function<std::shared_ptr<void>(std::function<void(Point)> onPress)> watchPresses;
        std::function<bool(Point)> isOnItem; ///< whether a press there is on the status item
        std::function<void(bool)> setItemHighlighted;
        /// Lets the window appear in the active space, also over another program's full-screen window.
        std::function<void(QWindow&)> followActiveSpace;
        /// Fits the system's shadow to the window's size and corners.
        std::function<void(QWindow&)> updateShadow;
    };

    explicit ActiveInput(Requests requests);
    ActiveInput(const ActiveInput&) = delete;
    ActiveInput& operator=(const ActiveInput&) = delete;
    ~ActiveInput() override = default;

    /// The system draws the shadow.
    [[nodiscard]] PopoverLook look() const override { return PopoverLook::rounded; }

    void prepare(QWindow& window) override;
    void placeWindow(QWindow& window, const QRect& frame, const QRect& area) override;
    void acquire(QWindow& window, std::function<void()> onDismissed) override;
    void release(QWindow& window) override;

  private:
    void stateChanged(Qt::ApplicationState state);
    void highlightItemSoon();
    void dismiss() const;

    Requests requests_;
    QPointer<QWindow> window_; ///< null while no window has the input
    std::function<void()> onDismissed_;
    std::shared_ptr<void> presses_;
    bool isActive_;         ///< whether the program is active, as last reported by the system
    bool isHiding_ = false; ///< hiding was requested and has not taken effect
    QObject context_;       ///< of what is called later
};

} // namespace kelvinbar
