#pragma once

#include "shell/ShellPorts.h"

namespace kelvinbar {

/// Timers of Qt's event loop. A generous tolerance lets them fire together with others, which saves energy.
/// Main thread.
class QtTimers final : public RepeatingTimers {
  public:
    std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                          std::chrono::milliseconds tolerance,
                                          std::function<void()> block) override;
};

} // namespace kelvinbar
