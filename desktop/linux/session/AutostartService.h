#pragma once

#include "base/BoundedCall.h"
#include "desktop/linux/session/AutostartEntry.h"
#include "shell/LoginItemManager.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

class Log;

/// Starting at login by an autostart entry. The entry is read and written on another thread: a disk or a
/// network share that does not answer delays the main thread by `usualLimit` at most. The program then counts
/// as not registered, and a change as failed. Main thread.
class AutostartService final : public LoginItemService {
  public:
    static constexpr std::chrono::milliseconds usualLimit{300};

    struct Actions {
        /// Opens the desktop's settings for programs that start at login, if it has any.
        std::function<void()> openSettings;
        /// Plays the alert sound.
        std::function<void()> beep;
    };

    /// `makeEntry` makes the entry that reports as it is told. The log must outlive the object.
    AutostartService(const std::function<AutostartEntry(AutostartEntry::Report)>& makeEntry, Actions actions,
                     Log& log);
    AutostartService(const AutostartService&) = delete;
    AutostartService& operator=(const AutostartService&) = delete;
    ~AutostartService() override;

    [[nodiscard]] bool canRegister() const override { return true; }

    [[nodiscard]] bool isRegistered() const override;
    bool registerItem() override;
    bool unregisterItem() override;

    /// See AutostartEntry. Returns at once.
    void renew();

    /// See AutostartEntry.
    [[nodiscard]] std::string programWord() const;

    void openLoginItemsSettings() override { actions_.openSettings(); }

    void beep() override { actions_.beep(); }

  private:
    struct Shared;

    bool isDone(bool (*work)(AutostartEntry& entry)) const;

    std::shared_ptr<Shared> shared_; ///< also held by the thread
    Actions actions_;
    Log& log_;
    mutable BoundedCall calls_;
};

} // namespace kelvinbar
