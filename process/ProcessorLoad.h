#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <thread>
#include <vector>

namespace kelvinbar {

/// Threads that compute, one for each processor that the system has online. They end by themselves when their
/// time is over, so that a load does not outlast a program that is stuck. One thread uses the object.
class ProcessorLoad {
  public:
    ProcessorLoad() = default;
    ProcessorLoad(const ProcessorLoad&) = delete;
    ProcessorLoad& operator=(const ProcessorLoad&) = delete;

    ~ProcessorLoad() { end(); }

    /// Starts computing for `time` at the longest; ends an earlier load first. Returns the number of threads,
    /// which is lower than that of the processors if the system has no more, and 0 if it has none.
    std::size_t begin(std::chrono::nanoseconds time);

    /// Ends the load. Returns when the threads have ended, in about a millisecond.
    void end();

  private:
    std::atomic<bool> isEnded_ = false;
    std::vector<std::thread> threads_;
};

} // namespace kelvinbar
