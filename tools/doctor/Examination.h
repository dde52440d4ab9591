#pragma once

#include "base/Finding.h"
#include "base/MainLoopQueue.h"
#include "base/WorkerQueue.h"
#include "sensors/Machine.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace kelvinbar {

/// Examines a machine: what its sources found, and what a pass over its sensors costs. A device that does not
/// answer is set aside as in the programs. One use; main thread.
class Examination {
  public:
    /// Looks at the sources of the machine; called on another thread, after a pass.
    using Look = std::function<std::vector<FindingSection>(const Machine&)>;

    /// How long `finish` waits.
    static constexpr std::chrono::milliseconds closingLimit{500};

    Examination() = default;
    Examination(const Examination&) = delete;
    Examination& operator=(const Examination&) = delete;
    ~Examination() = default;

    /// Reads all sensors three times. Throws std::bad_alloc if there is not enough memory.
    std::vector<FindingSection> examine(const Machine& machine, const Look& look);

    /// To files and drivers, in the second pass. No value before it, nor for a machine without a watch.
    [[nodiscard]] std::optional<std::size_t> accessesOfLastPass() const { return accessesOfLastPass_; }

    /// Waits until the sources are closed. Returns whether no thread is stuck in one: otherwise the object
    /// must not be destroyed, nor anything that the machine uses.
    [[nodiscard]] bool finish() { return backgroundQueue_.finish(closingLimit); }

  private:
    /// For each device that may be set aside a pass, and a look, and closing.
    static constexpr std::size_t mostThreads = 2 * ReadWatch::mostSilent + 2;

    std::vector<FindingSection> examinePasses(const Machine& machine);

    MainLoopQueue mainQueue_;
    WorkerQueue backgroundQueue_{mostThreads};
    std::optional<std::size_t> accessesOfLastPass_;
};

} // namespace kelvinbar
