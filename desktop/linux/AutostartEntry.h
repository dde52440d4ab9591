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

/// The program's XDG autostart entry: a desktop file in the user's autostart folder. An entry that the user
/// has disabled, in an editor or in the desktop's settings, counts as not registered. Registering enables it
/// and keeps its other lines.
///
/// Pitfall: a file that cannot be read completely is not replaced, so registering fails. Main thread.
class AutostartEntry final : public LoginItemService {
  public:
    struct Actions {
        /// Opens the desktop's settings for programs that start at login, if it has any.
        std::function<void()> openSettings;
        /// Plays the alert sound.
        std::function<void()> beep;
    };

    /// `folder` is the autostart folder, `name` the entry's file name without ".desktop", and `command` the
    /// program with its arguments. Logs changes, and failures as errors. The log must outlive the object.
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

/// The user's autostart folder, from the environment variables XDG_CONFIG_HOME and HOME.
std::filesystem::path userAutostartFolder();

/// A program and its arguments as the value of a desktop entry's Exec key, with all characters escaped that
/// need it.
std::string desktopExecValue(const std::vector<std::string>& command);

} // namespace kelvinbar
