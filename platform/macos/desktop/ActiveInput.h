#pragma once

#include "platform/qt/PopoverInput.h"

#include <QObject>

namespace kelvinbar {

/// The window is a panel above the others, and the program is the active one while it is open: a user who
/// turns to something else activates another program.
class ActiveInput final : public PopoverInput {
  public:
    /// What is asked of the system.
    struct Requests {
        std::function<void()> activate; ///< brings the program to the front
        std::function<void()> hide;     ///< brings the program to the front that was there before
    };

    explicit ActiveInput(Requests requests);
    ActiveInput(const ActiveInput&) = delete;
    ActiveInput& operator=(const ActiveInput&) = delete;
    ~ActiveInput() override;

    void prepare(QWindow& window) override;
    void take(QWindow& window, std::function<void()> onElsewhere) override;
    void giveBack(QWindow& window) override;

  private:
    Requests requests_;
    QMetaObject::Connection state_;
};

} // namespace kelvinbar
