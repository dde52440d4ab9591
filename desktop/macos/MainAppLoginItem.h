#pragma once

#include "shell/LoginItemManager.h"

namespace kelvinbar {

/// The program as a login item. Uses the system's service from macOS 13 on. Before that a program cannot
/// register itself, and the user adds it in the settings. Main thread.
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
