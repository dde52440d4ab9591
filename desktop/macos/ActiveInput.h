#pragma once

#include "desktop/qt/PopoverInput.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace kelvinbar {

/// The window is a panel above the others, and the program is the active one while it is open. A user turns
/// elsewhere by making another program active, or by a press in one that does not become active, such as
/// another item of the menu bar.
class ActiveInput final : public PopoverInput {
  public:
    /// What is asked of the system.
    struct Requests {
        std::function<void()> activate; ///< brings the program to the front
        std::function<void()> hide;     ///< brings the program to the front that was there before
        /// Calls `onPress` at every press of a mouse button in another program, while the result is kept.
        std::function<std::shared_ptr<void>(std::function<void()> onPress)> watchPresses;
    };

    explicit ActiveInput(Requests requests);
    ActiveInput(const ActiveInput&) = delete;
    ActiveInput& operator=(const ActiveInput&) = delete;
    ~ActiveInput() override;

    void prepare(QWindow& window) override;
    void take(QWindow& window, std::function<void()> onElsewhere) override;
    void giveBack(QWindow& window) override;

  private:
    void stateChanged(Qt::ApplicationState state);
    void turnElsewhere() const;

    Requests requests_;
    QMetaObject::Connection state_;
    QPointer<QWindow> window_; ///< null while no window has the input
    std::function<void()> onElsewhere_;
    std::shared_ptr<void> presses_;
    bool isActive_;         ///< whether the program is in front, as far as the system has told
    bool isHiding_ = false; ///< from a hiding until it has taken effect
};

} // namespace kelvinbar
