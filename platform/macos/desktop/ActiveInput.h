#pragma once

#include "platform/qt/PopoverInput.h"

#include <functional>
#include <utility>

namespace kelvinbar {

/// The window is a panel above the others; the program is active while it is open, and the user who clicks
/// elsewhere activates another one.
class ActiveInput final : public PopoverInput {
  public:
    /// `activate` brings the program to the front.
    explicit ActiveInput(std::function<void()> activate) : activate_(std::move(activate)) {}

    [[nodiscard]] Qt::WindowFlags windowFlags() const override;
    void take(QWindow& window) override;

    void giveBack(QWindow& /*window*/) override {} // the system activates what the user turns to

    [[nodiscard]] bool turnsElsewhere(const QWindow& window, const QEvent& event) const override;

  private:
    std::function<void()> activate_;
};

} // namespace kelvinbar
