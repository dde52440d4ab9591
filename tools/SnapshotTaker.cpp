#include "tools/SnapshotTaker.h"

#include "base/NotificationCenter.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "store/KeyContinuity.h"
#include "store/LoadPass.h"
#include "store/Preferences.h"
#include "store/ReadingOrder.h"

#include <algorithm>
#include <new>
#include <variant>

namespace kelvinbar {

namespace {

/// Native readings are the system's own facts.
bool isAnswer(const SMCReading& reading) { return reading.raw != noAnswer && reading.type != nativeType; }

std::vector<SMCReading> copiesByKey(const std::vector<SMCReading>& readings) {
    std::vector<SMCReading> sorted;
    sorted.reserve(readings.size());
    for (const SMCReading* const reading : sortedByKey(readings)) sorted.push_back(*reading);
    return sorted;
}

void copyLists(const Dictionary& preferences, UserDefaults& defaults) {
    for (const auto& [key, value] : preferences) {
        if (const auto* list = std::get_if<TextList>(&value)) defaults.setTextList(key, *list);
    }
}

} // namespace

/// A store over the machine, and what it works with.
class SnapshotTaker::OpenMachine {
  public:
    OpenMachine(const Machine& machine, const Dictionary& preferences, MainQueue& mainQueue,
                BackgroundQueue& backgroundQueue)
        : clock_(machine.clock), discoveredAt_(machine.clock->now()) {
        copyLists(preferences, defaults_);
        // Without preferences, no keys of another version are looked up.
        if (preferences.begin() == preferences.end()) KeyContinuity::markCarriedOver(defaults_);
        pinned_ = loadPreferences(defaults_).menuBarKeys;
        store_ = KelvinbarStore::create({.machine = machine,
                                         .defaults = defaults_,
                                         .notifications = notifications_,
                                         .mainQueue = mainQueue,
                                         .backgroundQueue = backgroundQueue,
                                         .wallClock = wallClock_});
    }

    OpenMachine(const OpenMachine&) = delete;
    OpenMachine& operator=(const OpenMachine&) = delete;

    ~OpenMachine() { store_->shutdown(); }

    void refresh(const std::shared_ptr<const KeySet>& keys) {
        const bool looksForDevices = clock_->now() - discoveredAt_ > KelvinbarStore::discoveryInterval;
        if (looksForDevices) discoveredAt_ = clock_->now();
        isOfAllKeys_ = keys == nullptr || looksForDevices;
        if (isOfAllKeys_) {
            store_->refresh(looksForDevices);
        } else {
            store_->refreshOnly(keys);
        }
    }

    const std::vector<std::string>& pin(const Dictionary& preferences) {
        InMemoryUserDefaults changed;
        copyLists(preferences, changed);
        pinned_ = loadPreferences(changed).menuBarKeys;
        store_->setMenuBarKeys(pinned_);
        return pinned_;
    }

    [[nodiscard]] const KelvinbarStore& store() const { return *store_; }

    [[nodiscard]] Snapshot snapshot() const {
        const auto& readings = store_->readings().value();
        const std::string& status = store_->statusMessage().value();
        return {.readings = copiesByKey(readings),
                .time = store_->lastUpdated().value().value_or(wallClock_.now()),
                .status = status,
                .isLoaded = status == loadStatus(readings.size(), store_->texts()),
                .silent = store_->silentDevices(),
                .pinned = pinned(),
                .accesses = store_->accessesOfLastPass(),
                .hasAnswers = std::ranges::any_of(readings, isAnswer),
                .isOfAllKeys = isOfAllKeys_};
    }

  private:
    /// The store follows pins whose keys have changed, and drops those without a reading, which may come
    /// back.
    [[nodiscard]] std::vector<std::string> pinned() const {
        std::vector<std::string> keys = store_->menuBarKeys().value();
        for (const std::string& key : pinned_) {
            if (std::ranges::find(keys, key) == keys.end()) keys.push_back(key);
        }
        return keys;
    }

    InMemoryUserDefaults defaults_;
    NotificationCenter notifications_;
    SystemWallClock wallClock_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::chrono::nanoseconds discoveredAt_; ///< on `clock_`
    std::vector<std::string> pinned_;       ///< as the user has stored them
    bool isOfAllKeys_ = true;               ///< the last refresh
    std::shared_ptr<KelvinbarStore> store_;
};

SnapshotTaker::SnapshotTaker() = default;

SnapshotTaker::~SnapshotTaker() = default;

Snapshot SnapshotTaker::take(const Machine& machine) {
    Snapshot snapshot = begin(machine);
    end();
    return snapshot;
}

Snapshot SnapshotTaker::begin(const Machine& machine, const Dictionary& preferences) {
    open_ = std::make_unique<OpenMachine>(machine, preferences, mainQueue_, backgroundQueue_);
    mainQueue_.runUntil([this] { return !open_->store().isReading(); });
    if (open_->store().isLoading().value()) throw std::bad_alloc();
    return open_->snapshot();
}

Snapshot SnapshotTaker::next(const std::shared_ptr<const KeySet>& keys) {
    open_->refresh(keys);
    mainQueue_.runUntil([this] { return !open_->store().isReading(); });
    return open_->snapshot();
}

std::vector<std::string> SnapshotTaker::pin(const Dictionary& preferences) { return open_->pin(preferences); }

void SnapshotTaker::end() { open_.reset(); }

} // namespace kelvinbar
