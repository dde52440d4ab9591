#include "process/ProgramCost.h"

#include <algorithm>
#include <ratio>

namespace kelvinbar {

ProgramCost programCost(const ProcessCost& cost, std::chrono::seconds shortestTime) {
    using Minutes = std::chrono::duration<double, std::ratio<60>>;
    const double minutes = std::max<Minutes>(cost.time, shortestTime).count();
    ProgramCost program{.measuredTime = cost.time.count(),
                        .cpuTimePerMinute = cost.cpuTime.count() / minutes,
                        .wakeUpsPerMinute = static_cast<double>(cost.wakeUps) / minutes,
                        .residentMemory = {},
                        .privateMemory = {},
                        .accessesOfLastPass = {}};
    if (!cost.memory) return program;
    program.residentMemory = cost.memory->resident;
    program.privateMemory = cost.memory->withoutShared;
    return program;
}

} // namespace kelvinbar
