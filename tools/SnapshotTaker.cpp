#include "tools/SnapshotTaker.h"

#include "base/NotificationCenter.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"

#include <algorithm>
#include <new>

namespace kelvinbar {

namespace {

/// Native readings are the system's own facts.
bool isAnswer(const SMCReading& reading) { return reading.raw != noAnswer && reading.type != "native"; }

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
    Snapshot snapshot{.text = store->exportText(),
                      .silent = store->silentDevices(),
                      .hasAnswers = std::ranges::any_of(store->readings().value(), isAnswer)};
    store->shutdown();
    return snapshot;
}

} // namespace kelvinbar
