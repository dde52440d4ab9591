#pragma once

#include "desktop/qt/PopoverInput.h"

#include <QObject>

namespace kelvinbar {

/// Input of a popover on X11: an override-redirect window with a pointer and keyboard grab. The window
/// manager ignores it, and a click outside reaches only this window. The grab lasts until the button is
/// released, because trays react to the release: one that received it would open the panel again.
class GrabbedInput final : public QObject, public PopoverInput {
  public:
    void prepare(QWindow& window) override;
    void acquire(QWindow& window, std::function<void()> onDismissed) override;
    void release(QWindow& window) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void()> onDismissed_;
    bool isPressedOutside_ = false;
};

} // namespace kelvinbar
