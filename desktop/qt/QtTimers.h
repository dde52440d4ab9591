#pragma once

#include "shell/ShellPorts.h"

namespace kelvinbar {

class QtTimers final : public RepeatingTimers {
  public:
    std::unique_ptr<RepeatingTimer> start(std::chrono::milliseconds interval,
                                          std::chrono::milliseconds tolerance,
                                          std::function<void()> block) override;
};

} // namespace kelvinbar
