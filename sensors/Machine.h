#pragma once

#include "base/Clock.h"
#include "sensors/CriticalLimits.h"
#include "sensors/MachineTexts.h"
#include "sensors/ReadWatch.h"
#include "sensors/SensorSource.h"
#include "sensors/SystemInformation.h"

#include <chrono>
#include <memory>
#include <optional>

namespace kelvinbar {

/// A machine to read: the one that the program runs on, a recorded one or a fake. A plain value without
/// process-wide state; copies share the source. Only `system`, `watch`
/// and `limits` may be null.
struct Machine {
    std::shared_ptr<SensorSource> source;
    std::shared_ptr<const SystemInformation> system; ///< null: no facts to show if the source fails
    std::shared_ptr<const MonotonicClock> clock;
    std::shared_ptr<ReadWatch> watch{};       ///< null for a machine whose source always answers
    std::shared_ptr<CriticalLimits> limits{}; ///< null for a machine that tells none
    MachineTexts texts{}; ///< always those of the platform, even if a recorded machine is read
    std::optional<std::chrono::system_clock::time_point> recordedAt{}; ///< when it was read, if that is over
    bool devicesComeAndGo = false; ///< a sensor that is missing may be back later
};

} // namespace kelvinbar
