#pragma once

#include "base/Clock.h"
#include "base/NotificationCenter.h"
#include "base/Observable.h"
#include "base/Queues.h"
#include "catalogue/SMCReading.h"
#include "catalogue/Settings.h"
#include "store/AbsentKeys.h"
#include "store/ChangeAnnouncer.h"
#include "store/KeyContinuity.h"
#include "store/LoadPass.h"
#include "store/Preferences.h"
#include "store/ReadingRanges.h"
#include "store/UserDefaults.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The model of the program. It owns the current readings and the user's preferences; the status item and the
/// panel observe it and call it, and nothing else holds state about readings.
///
/// Readings come from passes. A full pass reads every known key, and at times discovers keys first; a menu
/// bar pass reads the pinned keys only. Passes block on hardware, so they run on the background queue. A pass
/// works on copies of what it needs and posts its result to the main queue, where the store applies it. It
/// does not keep the store alive: a result that arrives after the store's end is dropped.
///
/// A device that does not answer is set aside (sensors/ReadWatch.h). Its pass is left alone and done again
/// without it. Such a pass drops no pins and hidden keys: they may belong to the device.
///
/// A pass that runs out of memory has no result: the store keeps what it shows, drops nothing, and the next
/// refresh begins another.
///
/// Limits: at most one full pass and one menu bar pass run at a time, apart from abandoned ones; a request
/// for another is ignored, not queued. Six pins.
///
/// Pitfalls:
/// - A full pass without readings unpins and unhides everything; a menu bar pass without readings does not.
///   What comes back with its reading later depends on StorePorts::absent.
/// - Observers run inside the setters and may call the store again, or release it: what calls observers keeps
///   the store alive until it returns.
/// - `smcAvailable` is also true if only the system's own facts can be shown.
namespace kelvinbar {

/// What the store works with. All references must outlive the store; the main queue must also outlive the
/// background queue.
struct StorePorts {
    Machine machine;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    const WallClock& wallClock;
    AbsentSelections absent{}; ///< what becomes of pins and hidden keys without a reading
};

/// Readings, pins, hidden keys and settings, each as an observable field. Main thread only.
class KelvinbarStore : public std::enable_shared_from_this<KelvinbarStore> {
    struct Token {
        explicit Token() = default;
    };

  public:
    /// Age at which the next full refresh discovers keys again.
    static constexpr std::chrono::seconds discoveryInterval{300};

    /// Loads the preferences and starts the first full refresh. Stores and posts nothing.
    static std::shared_ptr<KelvinbarStore> create(const StorePorts& ports);

    /// For `create` alone.
    KelvinbarStore(Token token, StorePorts ports, Preferences preferences);
    KelvinbarStore(const KelvinbarStore&) = delete;
    KelvinbarStore& operator=(const KelvinbarStore&) = delete;
    ~KelvinbarStore() = default;

    /// Starts a full refresh unless one is running. With `forceDiscovery` it discovers keys even if the last
    /// discovery is recent.
    void refresh(bool forceDiscovery);

    /// Starts a refresh of the pinned readings, unless a refresh is running or nothing is pinned.
    void refreshMenuBarOnly();

    /// Starts a refresh of `keys` alone, unless a refresh is running. Its readings replace all others; pins
    /// and hidden keys stay. For programs that show a selection. `keys` is not null.
    void refreshOnly(const std::shared_ptr<const KeySet>& keys);

    /// Cancels running refreshes and lets the background queue close the machine's source. Does not wait: a
    /// cancelled pass may still read, and so open the source again.
    void shutdown();

    /// Pins the reading, or unpins it if it is pinned. A seventh pin replaces the oldest.
    void toggleMenuBarReading(const SMCReading& reading);

    /// Hides the reading and unpins it.
    void hideReading(const SMCReading& reading);
    void unhideAllReadings();

    /// Shows a hidden reading again. Ignores other keys.
    void showReading(const std::string& key);

    void setSamplingRate(SMCSamplingRate rate);
    void setDisplayMode(SMCWindowDisplayMode mode);

    /// Pins `keys`, in this order, after `sanitizedPinnedKeys`.
    void setMenuBarKeys(const std::vector<std::string>& keys);

    /// `height` in points, clamped to 560 to 1400. Resets the width to the standard.
    void setManualPopoverHeight(double height);

    /// For views that filter or search. The panel does neither, so only tests set these.
    void setSelectedCategory(std::optional<SMCCategory> category);
    void setSearchText(std::string text);

    /// The devices that the last full refresh left out because they do not answer.
    [[nodiscard]] const std::vector<SilentDevice>& silentDevices() const { return silentDevices_; }

    /// Lowest, highest and mean values since the store exists.
    [[nodiscard]] const ReadingRanges& ranges() const { return ranges_; }

    [[nodiscard]] const MachineTexts& texts() const { return ports_.machine.texts; }

    /// The pinned readings that have a displayable value, in pin order.
    [[nodiscard]] std::vector<SMCReading> menuBarReadings() const;
    [[nodiscard]] std::string menuBarTitle() const;
    [[nodiscard]] std::string menuBarToolTip() const;

    /// All readings, including hidden ones, as the text of a snapshot.
    [[nodiscard]] std::string exportText() const;

    /// Number of keys in the catalogue.
    [[nodiscard]] std::size_t totalCandidates() const { return fixedCandidates_->size(); }

    [[nodiscard]] const Observable<std::vector<SMCReading>>& readings() const { return readings_; }

    /// Whether a full refresh runs. If none does and `isLoading` is true, there was not enough memory for it.
    [[nodiscard]] bool isRefreshing() const { return refreshTask_.has_value(); }

    /// Whether any refresh runs.
    [[nodiscard]] bool isReading() const { return refreshTask_ || menuBarRefreshTask_; }

    [[nodiscard]] const Observable<bool>& isLoading() const { return isLoading_; }

    [[nodiscard]] const auto& lastUpdated() const { return lastUpdated_; }

    [[nodiscard]] const Observable<std::string>& statusMessage() const { return statusMessage_; }

    [[nodiscard]] const Observable<bool>& smcAvailable() const { return smcAvailable_; }

    [[nodiscard]] const Observable<SMCSamplingRate>& samplingRate() const { return samplingRate_; }

    [[nodiscard]] const Observable<SMCWindowDisplayMode>& displayMode() const { return displayMode_; }

    [[nodiscard]] const Observable<double>& manualPopoverWidth() const { return manualPopoverWidth_; }

    [[nodiscard]] const Observable<double>& manualPopoverHeight() const { return manualPopoverHeight_; }

    [[nodiscard]] const Observable<std::vector<std::string>>& menuBarKeys() const { return menuBarKeys_; }

    [[nodiscard]] const Observable<KeySet>& hiddenKeys() const { return hiddenKeys_; }

    [[nodiscard]] const auto& selectedCategory() const { return selectedCategory_; }

    [[nodiscard]] const Observable<std::string>& searchText() const { return searchText_; }

  private:
    using Time = std::chrono::system_clock::time_point;

    using Apply = void (KelvinbarStore::*)(SMCLoadResult);

    /// What the thread of a pass leaves for the main thread.
    struct PassOutcome {
        explicit PassOutcome(std::shared_ptr<ReadWatch> watch) : watched(std::move(watch)) {}

        WatchedPass watched;
        std::optional<SMCLoadResult> result; ///< no value if there was not enough memory for it
        std::atomic<bool> isLost = false;    ///< there was not even enough to post it
    };

    /// A pass that runs.
    struct RunningPass {
        LoadPass pass;
        Apply resultHandler = nullptr;
        std::shared_ptr<PassOutcome> outcome;
        Cancellation cancellation;
    };

    [[nodiscard]] bool isDiscoveryDue() const;
    void startMenuBarRefresh();
    void startRefreshOf(const std::shared_ptr<const KeySet>& keys, Apply apply);
    RunningPass start(const LoadPass& pass, Apply apply);
    void endPass(Apply apply, PassOutcome& outcome);
    static bool isRunning(std::optional<RunningPass>& task);
    static void forget(std::optional<RunningPass>& task, const PassOutcome& outcome);
    void goOnWithoutSilentDevices();
    void restartIfAbandoned(std::optional<RunningPass>& task);
    static void stop(std::optional<RunningPass>& task);
    void applyFullResult(SMCLoadResult result);
    void applyMenuBarResult(SMCLoadResult result);
    void applyOnlyResult(SMCLoadResult result);
    void followMovedKeys(KeyHistory history);
    void settleSelections(bool mayDrop);
    [[nodiscard]] std::vector<std::string> pinsFoundBy(const SMCLoadResult& result);
    void rememberDiscovery(KeySet keys);
    void patchReadings(std::vector<SMCReading> fresh);

    void assignMenuBarKeys(std::vector<std::string> keys);
    void setHiddenKeys(KeySet keys);
    void rememberPlaces();
    void unpin(std::string_view key);
    [[nodiscard]] std::size_t visibleReadingCount() const;

    void postMenuBarReadingChanged();
    void postDisplayModeChanged();
    void postManualSizeChanged();

    StorePorts ports_;
    ChangeAnnouncer announcer_;
    KeyContinuity continuity_;
    AbsentSelections absent_;
    ReadingRanges ranges_;

    Observable<std::vector<SMCReading>> readings_;
    Observable<bool> isLoading_{false};
    Observable<std::optional<Time>> lastUpdated_;
    Observable<std::string> statusMessage_{"Ready"};
    Observable<bool> smcAvailable_{false};

    Observable<SMCSamplingRate> samplingRate_;
    Observable<SMCWindowDisplayMode> displayMode_;
    Observable<double> manualPopoverWidth_;
    Observable<double> manualPopoverHeight_;
    Observable<std::vector<std::string>> menuBarKeys_;
    Observable<KeySet> hiddenKeys_;
    Observable<std::optional<SMCCategory>> selectedCategory_;
    Observable<std::string> searchText_;

    std::shared_ptr<const KeySet> fixedCandidates_;
    std::shared_ptr<const KeySet> discoveredCompatibleKeys_ = std::make_shared<const KeySet>();
    std::optional<std::chrono::nanoseconds> lastFullDiscovery_; ///< on the monotonic clock
    std::optional<RunningPass> refreshTask_;
    std::optional<RunningPass> menuBarRefreshTask_;
    std::unique_ptr<Alarm> watchAlarm_; ///< set while a pass runs; null for a machine without a watch
    std::vector<SilentDevice> silentDevices_;
};

} // namespace kelvinbar
