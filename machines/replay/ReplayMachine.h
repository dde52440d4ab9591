#pragma once

#include "machines/replay/RecordedMachine.h"
#include "sensors/Machine.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvinbar {

struct ReplayResult {
    std::optional<Machine> machine;    ///< nothing when no line of the text could be used
    std::vector<LineProblem> problems; ///< lines that could not be used, in their order
};

/// A machine that reads as the one did on which the snapshot `text` was taken. A text of system facts alone
/// was taken on a machine without a readable source, and becomes such a machine.
ReplayResult makeReplayMachine(std::string_view text, std::shared_ptr<const MonotonicClock> clock);

} // namespace kelvinbar
