#pragma once

#include "machines/replay/RecordedMachine.h"

#include <string_view>
#include <vector>

namespace kelvinbar {

struct ParsedSnapshot {
    RecordedMachine machine;
    std::vector<LineProblem> problems; ///< in the order of the lines
};

/// Reads a snapshot text, as it was exported or as it came out of a bug report: with text around it, other
/// line ends, lost trailing blanks. A line that cannot be used is reported and skipped. Cost grows linearly.
ParsedSnapshot parseSnapshot(std::string_view text);

} // namespace kelvinbar
