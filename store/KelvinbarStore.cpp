#include "store/KelvinbarStore.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "store/MenuBarText.h"
#include "store/SnapshotExport.h"
#include "store/VisibleReadings.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

bool areSamePoints(double left, double right) { return std::fabs(left - right) <= 0.5; }

std::unordered_set<std::string_view> keysOf(const std::vector<SMCReading>& readings) {
    std::unordered_set<std::string_view> keys;
    keys.reserve(readings.size());
    for (const SMCReading& reading : readings) keys.insert(reading.key);
    return keys;
}

std::vector<std::string> keptKeys(const std::vector<std::string>& keys,
                                  const std::unordered_set<std::string_view>& valid) {
    std::vector<std::string> kept;
    std::ranges::copy_if(keys, std::back_inserter(kept),
                         [&](const auto& key) { return valid.contains(key); });
    return kept;
}

KeySet keptKeys(const KeySet& keys, const std::unordered_set<std::string_view>& valid) {
    KeySet kept;
    for (const std::string& key : keys) {
        if (valid.contains(key)) kept.insert(kept.end(), key);
    }
    return kept;
}

} // namespace

std::shared_ptr<KelvinbarStore> KelvinbarStore::create(const StorePorts& ports) {
    // Not make_shared, with which a pass that still runs would keep the memory.
    std::shared_ptr<KelvinbarStore> store =
        std::make_unique<KelvinbarStore>(Token(), ports, loadPreferences(ports.defaults));
    if (ports.machine.watch != nullptr) {
        store->watchAlarm_ = ports.mainQueue.makeAlarm([weakSelf = std::weak_ptr(store)] {
            if (const auto self = weakSelf.lock()) self->goOnWithoutSilentDevices();
        });
    }
    store->refresh(true);
    return store;
}

KelvinbarStore::KelvinbarStore(Token /*token*/, StorePorts ports, Preferences preferences)
    : ports_(std::move(ports))
    , announcer_(ports_.notifications)
    , continuity_(ports_.defaults)
    , samplingRate_(preferences.samplingRate)
    , displayMode_(preferences.displayMode)
    , manualPopoverWidth_(preferences.manualPopoverSize.width)
    , manualPopoverHeight_(preferences.manualPopoverSize.height)
    , menuBarKeys_(std::move(preferences.menuBarKeys))
    , hiddenKeys_(std::move(preferences.hiddenKeys))
    , fixedCandidates_(std::make_shared<const KeySet>(SMCKeyDatabase::allKeys().begin(),
                                                      SMCKeyDatabase::allKeys().end())) {}

// Refreshing

void KelvinbarStore::refresh(bool forceDiscovery) {
    if (refreshTask_) return;
    const auto self = shared_from_this(); // an observer may release the store
    isLoading_.set(readings_.value().empty());
    statusMessage_.set(std::string(texts().reading));
    refreshTask_ = start({.fixedCandidates = fixedCandidates_,
                          .shouldDiscover = forceDiscovery || isDiscoveryDue(),
                          .cachedDynamicKeys = discoveredCompatibleKeys_,
                          .readSuperIOFans = true,
                          .carryKeysOver = continuity_.needsFormerKeys()},
                         &KelvinbarStore::applyFullResult);
}

void KelvinbarStore::refreshMenuBarOnly() {
    if (refreshTask_ || menuBarRefreshTask_ || menuBarKeys_.value().empty()) return;
    const auto keys =
        std::make_shared<const KeySet>(menuBarKeys_.value().begin(), menuBarKeys_.value().end());
    const bool anyFan = std::ranges::any_of(*keys, [](const auto& key) { return key.starts_with("FAN"); });
    menuBarRefreshTask_ = start({.fixedCandidates = keys,
                                 .shouldDiscover = false,
                                 .cachedDynamicKeys = keys,
                                 .readSuperIOFans = anyFan},
                                &KelvinbarStore::applyMenuBarResult);
}

void KelvinbarStore::shutdown() {
    stop(refreshTask_);
    stop(menuBarRefreshTask_);
    if (watchAlarm_ != nullptr) watchAlarm_->clear();
    ports_.backgroundQueue.start([machine = ports_.machine](const Cancellation&) {
        WatchedPass watched(machine.watch);
        const WatchedPass::Scope scope(watched);
        machine.source->close();
    });
}

void KelvinbarStore::stop(std::optional<RunningPass>& task) {
    if (task) task->cancellation.cancel();
    task.reset();
}

bool KelvinbarStore::isDiscoveryDue() const {
    return discoveredCompatibleKeys_->empty() || !lastFullDiscovery_ ||
           ports_.machine.clock->now() - *lastFullDiscovery_ > discoveryInterval;
}

KelvinbarStore::RunningPass KelvinbarStore::start(const LoadPass& pass, Apply apply) {
    auto watched = std::make_shared<WatchedPass>(ports_.machine.watch);
    Cancellation cancellation = ports_.backgroundQueue.start(
        [pass, apply, watched, machine = ports_.machine, weakSelf = weak_from_this(),
         &mainQueue = ports_.mainQueue](const Cancellation& cancelled) {
            const WatchedPass::Scope scope(*watched);
            const auto result = std::make_shared<SMCLoadResult>(loadReadings(machine, pass, cancelled));
            mainQueue.post([apply, watched, weakSelf, result] {
                if (const auto self = weakSelf.lock()) self->applyResult(apply, *watched, std::move(*result));
            });
        });
    if (watchAlarm_ != nullptr) watchAlarm_->set(ports_.machine.watch->limit());
    return {
        .pass = pass, .resultHandler = apply, .watched = std::move(watched), .cancellation = cancellation};
}

void KelvinbarStore::applyResult(Apply apply, const WatchedPass& watched, SMCLoadResult result) {
    if (watched.isAbandoned()) {
        // Its device answers again, and may have been left out of the last discovery.
        lastFullDiscovery_.reset();
        return;
    }
    ((*this).*apply)(std::move(result));
    if (watchAlarm_ != nullptr && !refreshTask_ && !menuBarRefreshTask_) watchAlarm_->clear();
}

// Devices that do not answer

/// Sets such devices aside. The passes that wait for them begin again without them.
void KelvinbarStore::goOnWithoutSilentDevices() {
    const auto untilNextLook = ports_.machine.watch->setAsideSilentDevices();
    restartIfAbandoned(refreshTask_);
    restartIfAbandoned(menuBarRefreshTask_);
    if (refreshTask_ || menuBarRefreshTask_) watchAlarm_->set(untilNextLook);
}

void KelvinbarStore::restartIfAbandoned(std::optional<RunningPass>& task) {
    if (!task || !task->watched->isAbandoned()) return;
    task->cancellation.cancel();
    task = start(task->pass, task->resultHandler);
}

void KelvinbarStore::applyFullResult(SMCLoadResult result) {
    ranges_.record(result.readings);
    smcAvailable_.set(result.smcAvailable);
    readings_.set(std::move(result.readings));
    if (result.keyHistory) followMovedKeys(*std::move(result.keyHistory));
    if (result.silent.empty()) dropSelectionsWithoutReading();
    silentDevices_ = std::move(result.silent);
    if (result.discoveredKeys) rememberDiscovery(*std::move(result.discoveredKeys));
    if (result.smcAvailable) lastUpdated_.set(ports_.wallClock.now());
    statusMessage_.set(std::move(result.statusMessage));
    isLoading_.set(false);
    refreshTask_.reset();
    postMenuBarReadingChanged();
    postDisplayModeChanged();
}

/// Updates pins and hidden keys whose sensor has got another key.
void KelvinbarStore::followMovedKeys(KeyHistory history) {
    continuity_.learn(std::move(history));
    std::vector<std::string> pinned;
    for (const std::string& key : menuBarKeys_.value()) {
        if (auto current = continuity_.currentKey(key)) pinned.push_back(*std::move(current));
    }
    KeySet hidden;
    for (const std::string& key : hiddenKeys_.value()) {
        if (auto current = continuity_.currentKey(key)) hidden.insert(*std::move(current));
    }
    if (pinned != menuBarKeys_.value()) setMenuBarKeys(pinned);
    setHiddenKeys(std::move(hidden));
    continuity_.remember(menuBarKeys_.value(), hiddenKeys_.value());
}

/// Unpins and unhides keys that the machine does not have. A pass without readings therefore clears both.
void KelvinbarStore::dropSelectionsWithoutReading() {
    const auto valid = keysOf(readings_.value());
    if (auto pinned = keptKeys(menuBarKeys_.value(), valid); pinned != menuBarKeys_.value()) {
        setMenuBarKeys(pinned);
    }
    setHiddenKeys(keptKeys(hiddenKeys_.value(), valid));
}

void KelvinbarStore::rememberDiscovery(KeySet keys) {
    discoveredCompatibleKeys_ = std::make_shared<const KeySet>(std::move(keys));
    lastFullDiscovery_ = ports_.machine.clock->now();
}

void KelvinbarStore::applyMenuBarResult(SMCLoadResult result) {
    auto pinned = result.silent.empty() ? keptKeys(menuBarKeys_.value(), keysOf(result.readings))
                                        : menuBarKeys_.value();
    ranges_.record(result.readings);
    patchReadings(std::move(result.readings));
    // Unlike a full pass, a pass without readings keeps the pins.
    if (!pinned.empty() && pinned != menuBarKeys_.value()) setMenuBarKeys(pinned);
    if (result.smcAvailable) lastUpdated_.set(ports_.wallClock.now());
    menuBarRefreshTask_.reset();
    postMenuBarReadingChanged();
}

/// Replaces readings with the same key in place and appends the others.
void KelvinbarStore::patchReadings(std::vector<SMCReading> fresh) {
    if (fresh.empty()) return;
    std::vector<SMCReading> patched = readings_.value();
    for (SMCReading& reading : fresh) {
        const auto found = std::ranges::find(patched, reading.key, &SMCReading::key);
        if (found == patched.end()) {
            patched.push_back(std::move(reading));
        } else {
            *found = std::move(reading);
        }
    }
    readings_.set(std::move(patched));
}

// Pinned and hidden readings

void KelvinbarStore::setMenuBarKeys(const std::vector<std::string>& keys) {
    const auto self = shared_from_this(); // an observer may release the store
    menuBarKeys_.set(sanitizedPinnedKeys(keys));
    storeMenuBarKeys(ports_.defaults, menuBarKeys_.value());
    continuity_.remember(menuBarKeys_.value(), hiddenKeys_.value());
    postMenuBarReadingChanged();
}

void KelvinbarStore::toggleMenuBarReading(const SMCReading& reading) {
    const std::string key(trimmed(reading.key));
    if (key.empty()) return;
    std::vector<std::string> keys = menuBarKeys_.value();
    if (std::erase(keys, key) == 0) {
        if (keys.size() >= maximumPinnedKeys) {
            const auto surplus = keys.size() - (maximumPinnedKeys - 1);
            keys.erase(keys.begin(), keys.begin() + static_cast<std::ptrdiff_t>(surplus));
        }
        keys.push_back(key);
    }
    setMenuBarKeys(keys);
}

void KelvinbarStore::unpin(std::string_view key) {
    std::vector<std::string> keys = menuBarKeys_.value();
    if (std::erase(keys, key) > 0) setMenuBarKeys(keys);
}

void KelvinbarStore::hideReading(const SMCReading& reading) {
    const std::string key(trimmed(reading.key));
    if (key.empty()) return;
    const auto self = shared_from_this(); // an observer may release the store
    KeySet keys = hiddenKeys_.value();
    keys.insert(key);
    setHiddenKeys(std::move(keys));
    unpin(key);
}

void KelvinbarStore::unhideAllReadings() { setHiddenKeys({}); }

void KelvinbarStore::showReading(const std::string& key) {
    KeySet keys = hiddenKeys_.value();
    if (keys.erase(key) > 0) setHiddenKeys(std::move(keys));
}

void KelvinbarStore::setHiddenKeys(KeySet keys) {
    const auto self = shared_from_this(); // an observer may release the store
    if (!hiddenKeys_.set(std::move(keys))) return;
    storeHiddenKeys(ports_.defaults, hiddenKeys_.value());
    continuity_.remember(menuBarKeys_.value(), hiddenKeys_.value());
}

// Settings

void KelvinbarStore::setSamplingRate(SMCSamplingRate rate) {
    const auto self = shared_from_this(); // an observer may release the store
    if (!samplingRate_.set(rate)) return;
    storeSamplingRate(ports_.defaults, rate);
    announcer_.samplingRateChanged(rate);
}

void KelvinbarStore::setDisplayMode(SMCWindowDisplayMode mode) {
    const auto self = shared_from_this(); // an observer may release the store
    if (!displayMode_.set(mode)) return;
    storeDisplayMode(ports_.defaults, mode);
    postDisplayModeChanged();
}

void KelvinbarStore::setManualPopoverHeight(double height) {
    const auto self = shared_from_this(); // an observer may release the store
    // With the arguments in this order, NaN becomes the minimum.
    const PopoverSize size{standardPopoverSize.width,
                           std::min(std::max(minimumPopoverHeight, height), maximumPopoverHeight)};
    if (!areSamePoints(manualPopoverWidth_.value(), size.width) ||
        !areSamePoints(manualPopoverHeight_.value(), size.height)) {
        manualPopoverWidth_.set(size.width);
        manualPopoverHeight_.set(size.height);
        storeManualPopoverSize(ports_.defaults, size);
    }
    postManualSizeChanged();
}

void KelvinbarStore::setSelectedCategory(std::optional<SMCCategory> category) {
    const auto self = shared_from_this(); // an observer may release the store
    selectedCategory_.set(category);
}

void KelvinbarStore::setSearchText(std::string text) {
    const auto self = shared_from_this(); // an observer may release the store
    searchText_.set(std::move(text));
}

// Derived

std::vector<SMCReading> KelvinbarStore::menuBarReadings() const {
    std::vector<SMCReading> pinned;
    for (const std::string& key : menuBarKeys_.value()) {
        const auto found = std::ranges::find_if(readings_.value(), [&](const SMCReading& reading) {
            return reading.key == key && reading.hasDisplayableValue();
        });
        if (found != readings_.value().end()) pinned.push_back(*found);
    }
    return pinned;
}

std::string KelvinbarStore::menuBarTitle() const { return menuBarTitleText(menuBarReadings()); }

std::string KelvinbarStore::menuBarToolTip() const { return menuBarToolTipText(menuBarReadings()); }

std::string KelvinbarStore::exportText() const {
    return snapshotText(readings_.value(), lastUpdated_.value().value_or(ports_.wallClock.now()));
}

std::size_t KelvinbarStore::visibleReadingCount() const {
    const auto count = std::ranges::count_if(readings_.value(), [&](const SMCReading& reading) {
        return isVisibleReading(reading, hiddenKeys_.value());
    });
    return static_cast<std::size_t>(count);
}

// Notifications

void KelvinbarStore::postMenuBarReadingChanged() {
    const std::vector<SMCReading> pinned = menuBarReadings();
    announcer_.menuBarReadingChanged(
        {.title = menuBarTitleText(pinned), .toolTip = menuBarToolTipText(pinned)});
}

void KelvinbarStore::postDisplayModeChanged() {
    announcer_.displayModeChanged({.mode = displayMode_.value(), .visibleReadings = visibleReadingCount()});
}

void KelvinbarStore::postManualSizeChanged() {
    announcer_.manualSizeChanged(
        {.width = manualPopoverWidth_.value(), .height = manualPopoverHeight_.value()});
}

} // namespace kelvinbar
