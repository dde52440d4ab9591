#pragma once

#include "shell/LoginItemManager.h"

namespace kelvinbar {

/// The program among the login items: by the system's service from macOS 13 on, before that by the user's own
/// hand in the settings.
class MainAppLoginItem final : public LoginItemService {
  public:
    [[nodiscard]] bool canRegister() const override;
    [[nodiscard]] bool isRegistered() const override;
    bool registerItem() override;
    bool unregisterItem() override;
    void openLoginItemsSettings() override;
    void beep() override;
};

} // namespace kelvinbar
