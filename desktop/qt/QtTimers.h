#pragma once

#include "shell/ShellPorts.h"

namespace kelvinbar {

/// Timers of Qt's event loop, at the times of a TickSchedule. A block may invalidate or destroy its timer.
/// Main thread.
///
/// Pitfall: the kernel is not told the tolerance. Its timer slack would also delay animations, and be
/// inherited by threads and programs that are started meanwhile.
class QtTimers final : public RepeatingTimers {
  public:
    std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                          std::chrono::milliseconds tolerance,
                                          std::function<void()> block) override;
};

} // namespace kelvinbar
