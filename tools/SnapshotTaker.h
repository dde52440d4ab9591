#pragma once

#include "base/MainLoopQueue.h"
#include "base/WorkerQueue.h"
#include "catalogue/SMCReading.h"
#include "sensors/Machine.h"

#include <chrono>
#include <string>
#include <vector>

namespace kelvinbar {

/// A snapshot, and what is missing in it.
struct Snapshot {
    std::vector<SMCReading> readings; ///< sorted by key
    std::chrono::system_clock::time_point time{};
    std::string status;               ///< for people: how reading went
    std::vector<SilentDevice> silent; ///< devices that did not answer
    bool hasAnswers = false;          ///< of a sensor, not only the system's own facts
};

/// Takes snapshots of machines. Main thread.
class SnapshotTaker {
  public:
    /// How long `finish` waits. The time is short because whoever asked for the snapshot has it by then.
    static constexpr std::chrono::milliseconds closingLimit{500};

    /// Waits for the first full refresh of a store with in-memory preferences, then closes the machine's
    /// source. Devices that do not answer in time are left out, if the machine has a watch. Throws
    /// std::bad_alloc if there is not enough memory.
    Snapshot take(const Machine& machine);

    /// Waits until the sources are closed. Returns whether no thread is stuck in one: otherwise the object
    /// must not be destroyed, nor anything that the machine uses.
    [[nodiscard]] bool finish() { return backgroundQueue_.finish(closingLimit); }

  private:
    /// A pass for each device that may be set aside, the pass without them, and closing.
    static constexpr std::size_t mostThreads = ReadWatch::mostSilent + 2;

    MainLoopQueue mainQueue_;
    WorkerQueue backgroundQueue_{mostThreads};
};

} // namespace kelvinbar
