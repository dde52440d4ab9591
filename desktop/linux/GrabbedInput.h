#pragma once

#include "desktop/qt/PopoverInput.h"

#include <QObject>

namespace kelvinbar {

/// The window manager leaves the window alone, and it holds pointer and keyboard: a click anywhere else is
/// told to it, and to nobody besides. Trays act when the button is let go, so it holds them until then.
class GrabbedInput final : public QObject, public PopoverInput {
  public:
    void prepare(QWindow& window) override;
    void take(QWindow& window, std::function<void()> onElsewhere) override;
    void giveBack(QWindow& window) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void()> onElsewhere_;
    bool isPressedElsewhere_ = false;
};

} // namespace kelvinbar
