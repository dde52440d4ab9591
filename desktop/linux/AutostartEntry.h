#pragma once

#include "base/Log.h"
#include "shell/LoginItemManager.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The program's entry among those that the desktop starts at login: a file in the user's autostart folder.
/// An entry that the user has disabled, by hand or in the desktop's settings, counts as not registered;
/// registering enables it again and keeps what else is in it.
class AutostartEntry final : public LoginItemService {
  public:
    struct Actions {
        /// Opens the desktop's settings of programs that start at login, where it has some.
        std::function<void()> openSettings;
        std::function<void()> beep;
    };

    /// `folder` is the autostart folder, `name` that of the entry in it, and `command` the program with its
    /// arguments. Changes are logged, failures as errors.
    AutostartEntry(const std::filesystem::path& folder, const std::string& name,
                   std::vector<std::string> command, Actions actions, Log& log);

    [[nodiscard]] bool canRegister() const override { return true; }

    [[nodiscard]] bool isRegistered() const override;
    bool registerItem() override;
    bool unregisterItem() override;

    void openLoginItemsSettings() override { actions_.openSettings(); }

    void beep() override { actions_.beep(); }

  private:
    [[nodiscard]] std::optional<std::string> enabledEntry() const;
    bool logged(LogLevel level, const char* what) const;

    std::filesystem::path file_;
    std::vector<std::string> command_;
    Actions actions_;
    Log& log_;
};

/// The user's autostart folder by the environment's XDG_CONFIG_HOME and HOME.
std::filesystem::path userAutostartFolder();

/// A program and its arguments as the value of a desktop entry's Exec key, whatever characters are in them.
std::string desktopExecValue(const std::vector<std::string>& command);

} // namespace kelvinbar
