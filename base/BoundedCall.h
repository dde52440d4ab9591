#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <optional>

namespace kelvinbar {

/// Calls that may never return, such as those about a file on a disk that does not answer. Each runs on a
/// thread of its own, one at a time, and is waited for only so long. There is no thread between calls. One
/// thread at a time may use an object.
class BoundedCall {
  public:
    using Work = std::function<bool()>;

    /// Returns the result of `work`. No value if it does not come within `limit`, because the work or that of
    /// an earlier call takes too long, if it throws, or if there is no memory or no thread for it. Work that
    /// takes too long runs on, so it must own what it uses.
    std::optional<bool> run(Work work, std::chrono::milliseconds limit);

    /// Starts `work` and returns at once. Does nothing while an earlier call runs.
    void start(Work work);

  private:
    /// Waits for the call that runs. Returns whether none runs any more.
    [[nodiscard]] bool waitUntil(std::chrono::steady_clock::time_point deadline) const;

    std::future<bool> running_; ///< the result of the last call, unless it has been taken
};

} // namespace kelvinbar
