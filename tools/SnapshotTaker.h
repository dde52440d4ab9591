#pragma once

#include "base/MainLoopQueue.h"
#include "base/Value.h"
#include "base/WorkerQueue.h"
#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"
#include "sensors/Machine.h"
#include "sensors/WatchedLook.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar {

/// A snapshot, and what is missing in it.
struct Snapshot {
    std::vector<SMCReading> readings; ///< sorted by key
    std::chrono::system_clock::time_point time{};
    std::string status;                    ///< for people: how reading went
    bool isLoaded = false;                 ///< the source could be read; otherwise `status` says why not
    std::vector<SilentDevice> silent;      ///< devices that did not answer
    std::vector<std::string> pinned;       ///< keys, in pin order, whether or not there is a reading for them
    std::optional<std::size_t> accesses{}; ///< of the pass, to files and drivers; no value without a watch
    bool hasAnswers = false;               ///< of a sensor, not only the system's own facts
    bool isOfAllKeys = false;              ///< otherwise only the keys that were asked for were read
};

/// Takes snapshots of machines, one machine at a time. Devices that do not answer in time are left out, if
/// the machine has a watch. Main thread.
class SnapshotTaker {
  public:
    /// How long `finish` waits. The time is short because whoever asked for the snapshot has it by then.
    static constexpr std::chrono::milliseconds closingLimit{500};

    SnapshotTaker();
    SnapshotTaker(const SnapshotTaker&) = delete;
    SnapshotTaker& operator=(const SnapshotTaker&) = delete;
    ~SnapshotTaker();

    /// Opens the machine, waits for a full refresh and closes the machine. Throws std::bad_alloc if there is
    /// not enough memory.
    Snapshot take(const Machine& machine);

    /// The same without closing it. `preferences` are the user's, from which the pins are; they are not
    /// changed.
    Snapshot begin(const Machine& machine, const Dictionary& preferences = {});

    /// Waits for another refresh after `begin`: of `keys` alone, or a full one without them and when new
    /// devices are to be looked for. Without memory, the snapshot is the last one.
    Snapshot next(const std::shared_ptr<const KeySet>& keys);

    /// Takes the pins from the user's `preferences`, which have changed since `begin`, and returns their
    /// keys.
    std::vector<std::string> pin(const Dictionary& preferences);

    /// What `look` returns, which reads the machine besides: see watchedLook.
    template <typename Look>
    auto look(const Machine& machine, Look look) {
        return watchedLook(machine, mainQueue_, backgroundQueue_, std::move(look));
    }

    /// Closes the machine.
    void end();

    /// Waits until the sources are closed. Returns whether no thread is stuck in one: otherwise the object
    /// must not be destroyed, nor anything that the machine uses.
    [[nodiscard]] bool finish() { return backgroundQueue_.finish(closingLimit); }

  private:
    class OpenMachine;

    /// A pass for each device that may be set aside, the pass without them, and closing.
    static constexpr std::size_t mostThreads = ReadWatch::mostSilent + 2;

    MainLoopQueue mainQueue_;
    WorkerQueue backgroundQueue_{mostThreads};
    std::unique_ptr<OpenMachine> open_; ///< between `begin` and `end`
};

} // namespace kelvinbar
