#pragma once

#include "shell/LoginItemManager.h"

#include <functional>

namespace kelvinbar {

/// The program as a login item. Uses the system's service from macOS 13 on. Before that a program cannot
/// register itself, and the user adds it in the settings. Main thread.
class MainAppLoginItem final : public LoginItemService {
  public:
    /// `onRefusal` is called when the service refuses to register or unregister the program.
    explicit MainAppLoginItem(std::function<void()> onRefusal);

    [[nodiscard]] bool canRegister() const override;
    [[nodiscard]] bool isRegistered() const override;
    bool registerItem() override;
    bool unregisterItem() override;
    void openLoginItemsSettings() override;
    void beep() override;

  private:
    std::function<void()> onRefusal_;
};

} // namespace kelvinbar
