#pragma once

#include "machines/replay/RecordedMachine.h"
#include "sensors/Machine.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvinbar {

struct ReplayResult {
    std::optional<Machine> machine;    ///< empty when no line could be used
    std::vector<LineProblem> problems; ///< lines that could not be used, in order
};

/// A machine that returns the values of the snapshot `text`, on every platform. Exporting it yields the same
/// snapshot. If the text has system facts only, the machine has no readable source and shows those.
///
/// The values never change. `text` need not outlive the machine.
ReplayResult makeReplayMachine(std::string_view text, std::shared_ptr<const MonotonicClock> clock);

} // namespace kelvinbar
