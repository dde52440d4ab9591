#include "tools/SnapshotTaker.h"

#include "base/MainLoopQueue.h"
#include "base/NotificationCenter.h"
#include "base/WorkerQueue.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"

namespace kelvinbar {

std::string takeSnapshot(const Machine& machine) {
    useMachine(machine);
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    MainLoopQueue mainQueue;
    WorkerQueue backgroundQueue(1);
    const SystemWallClock wallClock;
    KelvinbarStore store({.defaults = defaults,
                          .notifications = notifications,
                          .mainQueue = mainQueue,
                          .backgroundQueue = backgroundQueue,
                          .wallClock = wallClock,
                          .monotonicClock = *machine.clock});
    mainQueue.runUntil([&] { return !store.isLoading().value(); });
    std::string text = store.exportText();
    store.shutdown();
    return text;
}

} // namespace kelvinbar
