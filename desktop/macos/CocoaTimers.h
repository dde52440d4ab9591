#pragma once

#include "shell/ShellPorts.h"

namespace kelvinbar {

/// Timers of the system, which knows their tolerance and lets them fire together with others. A block may
/// invalidate or destroy its timer. Main thread.
class CocoaTimers final : public RepeatingTimers {
  public:
    std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                          std::chrono::milliseconds tolerance,
                                          std::function<void()> block) override;
};

} // namespace kelvinbar
