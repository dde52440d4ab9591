#include "store/KelvinbarStore.h"

#include "base/OutOfMemory.h"
#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "store/MenuBarText.h"
#include "store/SnapshotExport.h"
#include "store/VisibleReadings.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iterator>
#include <utility>

namespace kelvinbar {

namespace {

bool areSamePoints(double left, double right) { return std::fabs(left - right) <= 0.5; }

AbsentKeys::KeyViews keysOf(const std::vector<SMCReading>& readings) {
    AbsentKeys::KeyViews keys;
    keys.reserve(readings.size());
    for (const SMCReading& reading : readings) keys.insert(reading.key);
    return keys;
}

AbsentKeys::Keys listOf(const KeySet& keys) { return {keys.begin(), keys.end()}; }

KeySet setOf(const AbsentKeys::Keys& keys) { return {keys.begin(), keys.end()}; }

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
    , absent_(std::move(ports_.absent))
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
    if (isRunning(refreshTask_)) return;
    const auto self = shared_from_this(); // an observer may release the store
    // Without memory, the next refresh tries again.
    static_cast<void>(hasMemoryFor([&] {
        isLoading_.set(readings_.value().empty());
        refreshTask_ = start({.fixedCandidates = fixedCandidates_,
                              .shouldDiscover = forceDiscovery || isDiscoveryDue(),
                              .cachedDynamicKeys = discoveredCompatibleKeys_,
                              .readSuperIOFans = true,
                              .carryKeysOver = continuity_.needsFormerKeys()},
                             &KelvinbarStore::applyFullResult);
        statusMessage_.set(std::string(texts().reading));
    }));
}

void KelvinbarStore::refreshMenuBarOnly() {
    if (isRunning(refreshTask_) || isRunning(menuBarRefreshTask_) || menuBarKeys_.value().empty()) return;
    static_cast<void>(hasMemoryFor([this] { startMenuBarRefresh(); }));
}

void KelvinbarStore::startMenuBarRefresh() {
    KeySet pinned = setOf(menuBarKeys_.value());
    pinned.merge(setOf(absent_.pins.waitingKeys()));
    startRefreshOf(std::make_shared<const KeySet>(std::move(pinned)), &KelvinbarStore::applyMenuBarResult);
}

void KelvinbarStore::refreshOnly(const std::shared_ptr<const KeySet>& keys) {
    if (isRunning(refreshTask_) || isRunning(menuBarRefreshTask_)) return;
    static_cast<void>(hasMemoryFor([&] { startRefreshOf(keys, &KelvinbarStore::applyOnlyResult); }));
}

void KelvinbarStore::startRefreshOf(const std::shared_ptr<const KeySet>& keys, Apply apply) {
    const bool anyFan = std::ranges::any_of(*keys, [](const auto& key) { return key.starts_with("FAN"); });
    menuBarRefreshTask_ = start({.fixedCandidates = keys,
                                 .shouldDiscover = false,
                                 .cachedDynamicKeys = keys,
                                 .readSuperIOFans = anyFan},
                                apply);
}

void KelvinbarStore::shutdown() {
    stop(refreshTask_);
    stop(menuBarRefreshTask_);
    if (watchAlarm_ != nullptr) watchAlarm_->clear();
    // Without memory, the sources are closed as the machine is destroyed.
    const auto close = [machine = ports_.machine](const Cancellation&) {
        WatchedPass watched(machine.watch);
        const WatchedPass::Scope scope(watched);
        static_cast<void>(hasMemoryFor([&] { machine.source->close(); }));
    };
    static_cast<void>(hasMemoryFor([&] { ports_.backgroundQueue.start(close); }));
}

void KelvinbarStore::stop(std::optional<RunningPass>& task) {
    if (task) task->cancellation.cancel();
    task.reset();
}

bool KelvinbarStore::isDiscoveryDue() const {
    return discoveredCompatibleKeys_->empty() || !lastFullDiscovery_ ||
           ports_.machine.clock->now() - *lastFullDiscovery_ > discoveryInterval;
}

/// What the end of the pass needs is made here: a pass that is out of memory must be able to end.
KelvinbarStore::RunningPass KelvinbarStore::start(const LoadPass& pass, Apply apply) {
    auto outcome = std::make_shared<PassOutcome>(ports_.machine.watch);
    std::function<void()> end = [apply, outcome, weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) self->endPass(apply, *outcome);
    };
    Cancellation cancellation =
        ports_.backgroundQueue.start([pass, outcome, end = std::move(end), machine = ports_.machine,
                                      &mainQueue = ports_.mainQueue](const Cancellation& cancelled) mutable {
            const WatchedPass::Scope scope(outcome->watched);
            const bool isRead =
                hasMemoryFor([&] { outcome->result = loadReadings(machine, pass, cancelled); });
            if (!isRead) outcome->result.reset();
            outcome->isLost = !hasMemoryFor([&] { mainQueue.post(std::move(end)); });
        });
    if (watchAlarm_ != nullptr) watchAlarm_->set(ports_.machine.watch->limit());
    return {
        .pass = pass, .resultHandler = apply, .outcome = std::move(outcome), .cancellation = cancellation};
}

/// Whether `task` runs. A pass whose end was lost does not run any more.
bool KelvinbarStore::isRunning(std::optional<RunningPass>& task) {
    if (task && task->outcome->isLost) task.reset();
    return task.has_value();
}

void KelvinbarStore::forget(std::optional<RunningPass>& task, const PassOutcome& outcome) {
    if (task && task->outcome.get() == &outcome) task.reset();
}

void KelvinbarStore::endPass(Apply apply, PassOutcome& outcome) {
    if (outcome.watched.isAbandoned()) {
        // Its device answers again, and may have been left out of the last discovery.
        lastFullDiscovery_.reset();
        return;
    }
    const bool isApplied =
        outcome.result && hasMemoryFor([&] { ((*this).*apply)(*std::move(outcome.result)); });
    if (!isApplied) {
        forget(refreshTask_, outcome);
        forget(menuBarRefreshTask_, outcome);
    }
    if (watchAlarm_ != nullptr && !refreshTask_ && !menuBarRefreshTask_) watchAlarm_->clear();
}

// Devices that do not answer

/// Sets such devices aside. The passes that wait for them begin again without them.
void KelvinbarStore::goOnWithoutSilentDevices() {
    auto untilNextLook = ports_.machine.watch->limit();
    // Without memory, the next look tries again.
    static_cast<void>(hasMemoryFor([&] {
        untilNextLook = ports_.machine.watch->setAsideSilentDevices();
        restartIfAbandoned(refreshTask_);
        restartIfAbandoned(menuBarRefreshTask_);
    }));
    const bool isAnyRunning = isRunning(refreshTask_) || isRunning(menuBarRefreshTask_);
    if (isAnyRunning) watchAlarm_->set(untilNextLook);
}

void KelvinbarStore::restartIfAbandoned(std::optional<RunningPass>& task) {
    if (!task || !task->outcome->watched.isAbandoned()) return;
    task->cancellation.cancel();
    task = start(task->pass, task->resultHandler);
}

void KelvinbarStore::applyFullResult(SMCLoadResult result) {
    ranges_.record(result.readings);
    smcAvailable_.set(result.smcAvailable);
    readings_.set(std::move(result.readings));
    if (result.keyHistory) followMovedKeys(*std::move(result.keyHistory));
    settleSelections(result.silent.empty());
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
    const auto currentKey = [this](const std::string& key) { return continuity_.currentKey(key); };
    // Both before either is stored, with which their earlier places are lost.
    auto pinned = absent_.pins.moved(menuBarKeys_.value(), currentKey);
    auto hidden = setOf(absent_.hidden.moved(listOf(hiddenKeys_.value()), currentKey));
    if (pinned != menuBarKeys_.value()) assignMenuBarKeys(std::move(pinned));
    setHiddenKeys(std::move(hidden));
    rememberPlaces();
}

/// Unpins and unhides keys that the machine does not have. A pass without readings therefore clears both.
/// Keys that were absent and have a reading again are pinned and hidden again.
void KelvinbarStore::settleSelections(bool mayDrop) {
    auto found = keysOf(readings_.value());
    const auto pinned = menuBarKeys_.value();
    const auto hidden = listOf(hiddenKeys_.value());
    if (!mayDrop) {
        found.insert(pinned.begin(), pinned.end());
        found.insert(hidden.begin(), hidden.end());
    }
    auto settled = absent_.pins.settled(pinned, found);
    if (settled != pinned) assignMenuBarKeys(std::move(settled));
    setHiddenKeys(setOf(absent_.hidden.settled(hidden, found)));
}

void KelvinbarStore::rememberDiscovery(KeySet keys) {
    discoveredCompatibleKeys_ = std::make_shared<const KeySet>(std::move(keys));
    lastFullDiscovery_ = ports_.machine.clock->now();
}

void KelvinbarStore::applyMenuBarResult(SMCLoadResult result) {
    auto pinned = pinsFoundBy(result);
    ranges_.record(result.readings);
    patchReadings(std::move(result.readings));
    if (pinned != menuBarKeys_.value()) assignMenuBarKeys(std::move(pinned));
    if (result.smcAvailable) lastUpdated_.set(ports_.wallClock.now());
    menuBarRefreshTask_.reset();
    postMenuBarReadingChanged();
}

void KelvinbarStore::applyOnlyResult(SMCLoadResult result) {
    ranges_.record(result.readings);
    readings_.set(std::move(result.readings));
    silentDevices_ = std::move(result.silent);
    if (result.smcAvailable) lastUpdated_.set(ports_.wallClock.now());
    statusMessage_.set(std::move(result.statusMessage));
    menuBarRefreshTask_.reset();
}

/// The pins after a menu bar pass. Unlike a full pass, one that finds none of the pins keeps them.
std::vector<std::string> KelvinbarStore::pinsFoundBy(const SMCLoadResult& result) {
    const auto& pinned = menuBarKeys_.value();
    auto found = keysOf(result.readings);
    const bool isAnyFound = std::ranges::any_of(pinned, [&](const auto& key) { return found.contains(key); });
    if (!isAnyFound || !result.silent.empty()) found.insert(pinned.begin(), pinned.end());
    return absent_.pins.settled(pinned, found);
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
    auto clean = sanitizedPinnedKeys(keys);
    absent_.pins.changed(menuBarKeys_.value(), clean);
    assignMenuBarKeys(std::move(clean));
}

void KelvinbarStore::assignMenuBarKeys(std::vector<std::string> keys) {
    const auto self = shared_from_this(); // an observer may release the store
    menuBarKeys_.set(std::move(keys));
    storeMenuBarKeys(ports_.defaults, menuBarKeys_.value());
    rememberPlaces();
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
    absent_.pins.forget(key);
    unpin(key);
}

void KelvinbarStore::unhideAllReadings() {
    absent_.hidden.forgetAll();
    setHiddenKeys({});
}

void KelvinbarStore::showReading(const std::string& key) {
    KeySet keys = hiddenKeys_.value();
    if (keys.erase(key) > 0) setHiddenKeys(std::move(keys));
}

void KelvinbarStore::setHiddenKeys(KeySet keys) {
    const auto self = shared_from_this(); // an observer may release the store
    if (!hiddenKeys_.set(std::move(keys))) return;
    storeHiddenKeys(ports_.defaults, hiddenKeys_.value());
    rememberPlaces();
}

/// Stores the places of all chosen keys, also of those that are absent.
void KelvinbarStore::rememberPlaces() {
    std::vector<std::string> pinned = menuBarKeys_.value();
    std::ranges::copy(absent_.pins.waitingKeys(), std::back_inserter(pinned));
    KeySet hidden = hiddenKeys_.value();
    hidden.merge(setOf(absent_.hidden.waitingKeys()));
    auto taken = absent_.pins.takenKeys();
    std::ranges::copy(absent_.hidden.takenKeys(), std::back_inserter(taken));
    continuity_.remember(pinned, hidden, taken);
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
