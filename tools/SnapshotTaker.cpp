#include "tools/SnapshotTaker.h"

#include "base/MainLoopQueue.h"
#include "base/NotificationCenter.h"
#include "base/WorkerQueue.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"

namespace kelvinbar {

std::string takeSnapshot(const Machine& machine) {
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    MainLoopQueue mainQueue;
    WorkerQueue backgroundQueue(1);
    const SystemWallClock wallClock;
    const auto store = KelvinbarStore::create({.machine = machine,
                                               .defaults = defaults,
                                               .notifications = notifications,
                                               .mainQueue = mainQueue,
                                               .backgroundQueue = backgroundQueue,
                                               .wallClock = wallClock});
    mainQueue.runUntil([&] { return !store->isLoading().value(); });
    std::string text = store->exportText();
    store->shutdown();
    return text;
}

} // namespace kelvinbar
