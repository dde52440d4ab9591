#pragma once

#include "shell/StatusItem.h"

namespace kelvinbar {

/// The menu bar's status items. Main thread.
class CocoaStatusBar final : public StatusBar {
  public:
    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;
};

} // namespace kelvinbar
