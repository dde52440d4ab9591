#pragma once

#include "base/Clock.h"
#include "base/NotificationCenter.h"
#include "base/Observable.h"
#include "base/Queues.h"
#include "catalogue/SMCReading.h"
#include "catalogue/Settings.h"
#include "store/ChangeAnnouncer.h"
#include "store/KeyContinuity.h"
#include "store/LoadPass.h"
#include "store/Preferences.h"
#include "store/UserDefaults.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// What the store works with. The references outlive the store; the main queue outlives the background queue
/// too.
struct StorePorts {
    Machine machine;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    MainQueue& mainQueue;
    BackgroundQueue& backgroundQueue;
    const WallClock& wallClock;
};

/// The one model of the program: the current readings, how they came about, and the user's preferences.
///
/// Main thread only. Passes over the machine run on the background queue and hand their result back; they
/// do not keep the store alive.
class KelvinbarStore {
  public:
    /// Age after which the controller's list of keys is read again.
    static constexpr std::chrono::seconds discoveryInterval{300};

    /// Reads the preferences and starts the first full refresh. Writes and posts nothing.
    explicit KelvinbarStore(StorePorts ports);
    KelvinbarStore(const KelvinbarStore&) = delete;
    KelvinbarStore& operator=(const KelvinbarStore&) = delete;
    ~KelvinbarStore() = default;

    /// Starts a full refresh unless one is running. `forceDiscovery` has the list of keys read again.
    void refresh(bool forceDiscovery);

    /// Starts a refresh of the pinned readings alone, unless any refresh is running or nothing is pinned.
    void refreshMenuBarOnly();

    /// Cancels what is running and closes the connection to the controller.
    void shutdown();

    /// Pins the reading, the oldest pin giving way to a seventh, or unpins it.
    void toggleMenuBarReading(const SMCReading& reading);

    /// Hides the reading and unpins it.
    void hideReading(const SMCReading& reading);
    void unhideAllReadings();

    void setSamplingRate(SMCSamplingRate rate);
    void setDisplayMode(SMCWindowDisplayMode mode);
    void setMenuBarKeys(const std::vector<std::string>& keys);

    /// `height` in points; 560 to 1400 are kept to. The width goes back to its standard.
    void setManualPopoverHeight(double height);

    void setSelectedCategory(std::optional<SMCCategory> category) { selectedCategory_.set(category); }

    void setSearchText(std::string text) { searchText_.set(std::move(text)); }

    [[nodiscard]] const MachineTexts& texts() const { return ports_.machine.texts; }

    /// The pinned readings that have something to show, in pin order.
    [[nodiscard]] std::vector<SMCReading> menuBarReadings() const;
    [[nodiscard]] std::string menuBarTitle() const;
    [[nodiscard]] std::string menuBarToolTip() const;

    /// All readings, hidden ones included, as a snapshot text.
    [[nodiscard]] std::string exportText() const;

    /// The size of the catalogue's fixed list of keys.
    [[nodiscard]] std::size_t totalCandidates() const { return fixedCandidates_->size(); }

    [[nodiscard]] const Observable<std::vector<SMCReading>>& readings() const { return readings_; }

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

    KelvinbarStore(StorePorts ports, Preferences preferences);

    [[nodiscard]] bool isDiscoveryDue() const;
    Cancellation start(const LoadPass& pass, Apply apply);
    void applyFullResult(SMCLoadResult result);
    void applyMenuBarResult(SMCLoadResult result);
    void followMovedKeys(KeyHistory history);
    void dropSelectionsWithoutReading();
    void rememberDiscovery(KeySet keys);
    void patchReadings(std::vector<SMCReading> fresh);

    void setHiddenKeys(KeySet keys);
    void unpin(std::string_view key);
    [[nodiscard]] std::size_t visibleReadingCount() const;

    void postMenuBarReadingChanged();
    void postDisplayModeChanged();
    void postManualSizeChanged();

    StorePorts ports_;
    ChangeAnnouncer announcer_;
    KeyContinuity continuity_;

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
    std::optional<Cancellation> refreshTask_;
    std::optional<Cancellation> menuBarRefreshTask_;

    /// Lets a result find out on the main thread whether the store is still there.
    std::shared_ptr<KelvinbarStore*> self_ = std::make_shared<KelvinbarStore*>(this);
};

} // namespace kelvinbar
