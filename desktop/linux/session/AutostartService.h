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

/// Starting at login by an autostart entry. The entry is read and written on another thread, so that a disk
/// or a network share that does not answer delays the main thread for a moment only. The state is then what
/// was known last, and a change that is still being made counts as made. Main thread.
class AutostartService final : public LoginItemService {
  public:
    /// How long the main thread waits.
    struct Patience {
        std::chrono::milliseconds look{100};
        std::chrono::milliseconds change{300};
    };

    struct Actions {
        /// Opens the desktop's settings for programs that start at login, if it has any.
        std::function<void()> openSettings;
        /// Plays the alert sound.
        std::function<void()> beep;
    };

    /// `makeEntry` makes the entry that reports as it is told. The log must outlive the object.
    AutostartService(const std::function<AutostartEntry(AutostartEntry::Report)>& makeEntry, Actions actions,
                     Patience patience, Log& log);
    AutostartService(const AutostartService&) = delete;
    AutostartService& operator=(const AutostartService&) = delete;
    ~AutostartService() override;

    [[nodiscard]] bool canRegister() const override { return true; }

    [[nodiscard]] bool isRegistered() const override;
    bool registerItem() override;
    bool unregisterItem() override;

    /// See AutostartEntry. Returns at once.
    void renew();

    /// See AutostartEntry. Looks into the folders of PATH, on this thread.
    [[nodiscard]] std::string programWord() const;

    void openLoginItemsSettings() override { actions_.openSettings(); }

    void beep() override { actions_.beep(); }

  private:
    struct Shared;

    using Work = bool (*)(AutostartEntry& entry);

    CallEnd call(Work work, std::chrono::milliseconds limit) const;
    bool change(Work work, bool willBeRegistered);

    std::shared_ptr<Shared> shared_; ///< also held by the thread
    Actions actions_;
    Patience patience_;
    Log& log_;
    mutable BoundedCall calls_;
    mutable bool isSilent_ = false;     ///< the disk did not answer the last time
    mutable bool isRegistered_ = false; ///< as far as is known
};

} // namespace kelvinbar
