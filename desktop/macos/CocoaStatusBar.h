#pragma once

#include "shell/StatusItem.h"

namespace kelvinbar {

/// Creates status items in the menu bar of macOS. Main thread.
class CocoaStatusBar final : public StatusBar {
  public:
    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;
};

} // namespace kelvinbar
