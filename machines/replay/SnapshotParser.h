#pragma once

#include "machines/replay/RecordedMachine.h"

#include <string_view>
#include <vector>

namespace kelvinbar {

struct ParsedSnapshot {
    RecordedMachine machine;
    std::vector<LineProblem> problems; ///< in the order of the lines
};

/// Parses a snapshot text. Tolerates what happens to a text in a bug report: text before and after it, other
/// line endings, stripped trailing spaces. A line that cannot be used is reported and skipped; of several
/// lines with one key the first counts. Takes time linear in the size of the text. Never fails: a text
/// without a usable line yields an empty machine.
ParsedSnapshot parseSnapshot(std::string_view text);

} // namespace kelvinbar
