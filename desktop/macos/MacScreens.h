#pragma once

#include "desktop/macos/MenuBarPlace.h"
#include "desktop/qt/QtScreens.h"

namespace kelvinbar {

/// The screens of a Mac, whose bar with items is at the top of each. Main thread.
class MacScreens final : public QtScreens {
  public:
    [[nodiscard]] Rect usualPlace(const ScreenFrames& screen) const override {
        return topRightCorner(screen);
    }
};

} // namespace kelvinbar
