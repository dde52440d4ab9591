#pragma once

#include "shell/PopoverPlacement.h"
#include "shell/ShellPorts.h"

namespace kelvinbar {

class QtScreens final : public Screens {
  public:
    [[nodiscard]] std::optional<Rect> mainVisibleFrame() const override;
    [[nodiscard]] std::vector<Rect> visibleFrames() const override;
};

/// The screen that a place on the desktop is on, or the nearest to it; the main screen for no place. Empty
/// frames without a screen.
ScreenFrames screenAround(const std::optional<Rect>& place);

} // namespace kelvinbar
