#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>

namespace kelvinbar {

/// What is known of a call when its time is over.
enum class CallEnd : std::uint8_t {
    succeeded,
    failed,
    late,       ///< it runs on
    notStarted, ///< an earlier call still runs, or there is no memory or no thread for this one
};

/// Calls that may never return, such as those about a file on a disk that does not answer. Each runs on a
/// thread of its own, one at a time, and is waited for only so long. There is no thread between calls. One
/// thread at a time may use an object.
class BoundedCall {
  public:
    /// Returns whether it succeeded. An exception counts as a failure. Work that takes too long runs on, so
    /// it must own what it uses.
    using Work = std::function<bool()>;

    /// Runs `work`, after an earlier call has returned, and waits at most `limit` in all.
    CallEnd run(Work work, std::chrono::milliseconds limit);

    /// Starts `work` and returns at once. Does nothing while an earlier call runs.
    void start(Work work);

  private:
    /// Waits for the call that runs. Returns whether none runs any more.
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point deadline) const;

    std::future<bool> running_; ///< the result of the last call, unless it has been taken
};

} // namespace kelvinbar
