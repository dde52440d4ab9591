#pragma once

#include "platform/qt/PopoverInput.h"

namespace kelvinbar {

/// The window manager leaves the window alone, and it holds pointer and keyboard: a click anywhere else is
/// told to it.
class GrabbedInput final : public PopoverInput {
  public:
    [[nodiscard]] Qt::WindowFlags windowFlags() const override;
    void take(QWindow& window) override;
    void giveBack(QWindow& window) override;
    [[nodiscard]] bool turnsElsewhere(const QWindow& window, const QEvent& event) const override;
};

} // namespace kelvinbar
