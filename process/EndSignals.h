#pragma once

#include "process/SignalPipe.h"

#include <array>
#include <chrono>
#include <csignal>

namespace kelvinbar {

/// SIGINT and SIGTERM as a request to end, for a program that mostly waits. A signal that the starter of the
/// process ignores stays ignored. The second signal of a kind ends the process as usual. One object at a
/// time; main thread.
class EndSignals {
  public:
    EndSignals();

    /// Waits. Returns true at once when a signal arrives or has arrived, or when nobody reads standard output
    /// any more.
    [[nodiscard]] bool comeWithin(std::chrono::nanoseconds time) const;

  private:
    static constexpr std::array numbers{SIGINT, SIGTERM};

    SignalPipe pipe_;
};

} // namespace kelvinbar
