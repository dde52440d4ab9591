#include "tools/SnapshotTaker.h"

#include "base/NotificationCenter.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "store/ReadingOrder.h"

#include <algorithm>
#include <new>

namespace kelvinbar {

namespace {

/// Native readings are the system's own facts.
bool isAnswer(const SMCReading& reading) { return reading.raw != noAnswer && reading.type != "native"; }

std::vector<SMCReading> copiesByKey(const std::vector<SMCReading>& readings) {
    std::vector<SMCReading> sorted;
    sorted.reserve(readings.size());
    for (const SMCReading* const reading : sortedByKey(readings)) sorted.push_back(*reading);
    return sorted;
}

Snapshot snapshotOf(const KelvinbarStore& store, const WallClock& clock) {
    const auto& readings = store.readings().value();
    return {.readings = copiesByKey(readings),
            .time = store.lastUpdated().value().value_or(clock.now()),
            .status = store.statusMessage().value(),
            .silent = store.silentDevices(),
            .hasAnswers = std::ranges::any_of(readings, isAnswer)};
}

} // namespace

Snapshot SnapshotTaker::take(const Machine& machine) {
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    const SystemWallClock wallClock;
    const auto store = KelvinbarStore::create({.machine = machine,
                                               .defaults = defaults,
                                               .notifications = notifications,
                                               .mainQueue = mainQueue_,
                                               .backgroundQueue = backgroundQueue_,
                                               .wallClock = wallClock});
    mainQueue_.runUntil([&] { return !store->isRefreshing(); });
    if (store->isLoading().value()) throw std::bad_alloc();
    Snapshot snapshot = snapshotOf(*store, wallClock);
    store->shutdown();
    return snapshot;
}

} // namespace kelvinbar
