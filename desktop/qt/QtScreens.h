#pragma once

#include "shell/PopoverPlacement.h"
#include "shell/ShellPorts.h"

namespace kelvinbar {

/// The screens as Qt reports them. Needs the application object. Main thread.
class QtScreens final : public Screens {
  public:
    [[nodiscard]] std::optional<Rect> mainVisibleFrame() const override;
    [[nodiscard]] std::vector<Rect> visibleFrames() const override;
};

/// The screen at or nearest to `place`, or the main screen if there is no place. Empty frames if there is no
/// screen. Main thread.
ScreenFrames screenAround(const std::optional<Rect>& place);

} // namespace kelvinbar
