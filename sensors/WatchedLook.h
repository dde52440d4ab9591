#pragma once

#include "base/MainLoopQueue.h"
#include "base/OutOfMemory.h"
#include "base/Queues.h"
#include "sensors/Machine.h"

#include <memory>
#include <optional>
#include <utility>

namespace kelvinbar {

/// What `look` returns, which runs on a background thread as a pass of the machine's watch. Waits for it. No
/// value if a device did not answer, which the next look leaves out, or if there was no memory.
///
/// A look that is stuck goes on when its driver answers: it must own what it uses. The queues outlive it.
/// Main thread.
template <typename Look>
auto watchedLook(const Machine& machine, MainLoopQueue& mainQueue, BackgroundQueue& backgroundQueue,
                 Look look) -> std::optional<decltype(look())> {
    struct Outcome {
        explicit Outcome(std::shared_ptr<ReadWatch> watch) : watched(std::move(watch)) {}

        WatchedPass watched;
        std::optional<decltype(look())> result;
        bool isDone = false; ///< main thread
    };

    const auto outcome = std::make_shared<Outcome>(machine.watch);
    backgroundQueue.start([&mainQueue, outcome, look = std::move(look)](const Cancellation&) {
        const WatchedPass::Scope scope(outcome->watched);
        static_cast<void>(hasMemoryFor([&] { outcome->result = look(); }));
        mainQueue.post([outcome] { outcome->isDone = true; });
    });
    std::unique_ptr<Alarm> alarm;
    if (machine.watch != nullptr) {
        alarm = mainQueue.makeAlarm([&] { alarm->set(machine.watch->setAsideSilentDevices()); });
        alarm->set(machine.watch->limit());
    }
    mainQueue.runUntil([&] { return outcome->isDone || outcome->watched.isAbandoned(); });
    // The thread of an abandoned look may still write.
    return outcome->watched.isAbandoned() ? std::nullopt : std::move(outcome->result);
}

} // namespace kelvinbar
