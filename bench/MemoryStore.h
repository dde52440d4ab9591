#pragma once

#include "base/Clock.h"
#include "base/NotificationCenter.h"
#include "base/Queues.h"
#include "bench/MemoryMachine.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"

#include <memory>

namespace kelvinbar::bench {

/// A store over 300 keys in memory. Its first refresh has been started.
class MemoryStore {
  public:
    /// The queues outlive the object.
    MemoryStore(MainQueue& mainQueue, BackgroundQueue& backgroundQueue)
        : store_(KelvinbarStore::create({.machine = memory_.machine,
                                         .defaults = defaults_,
                                         .notifications = notifications_,
                                         .mainQueue = mainQueue,
                                         .backgroundQueue = backgroundQueue,
                                         .wallClock = wallClock_})) {}

    [[nodiscard]] KelvinbarStore& store() { return *store_; }

    [[nodiscard]] const KelvinbarStore& store() const { return *store_; }

    [[nodiscard]] MemoryDriver& driver() const { return *memory_.driver; }

  private:
    const MemoryMachine memory_{namedKeys(300)};
    InMemoryUserDefaults defaults_;
    NotificationCenter notifications_;
    SystemWallClock wallClock_;
    std::shared_ptr<KelvinbarStore> store_;
};

} // namespace kelvinbar::bench
