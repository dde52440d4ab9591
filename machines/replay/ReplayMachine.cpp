#include "machines/replay/ReplayMachine.h"

#include "machines/replay/ReplaySource.h"
#include "machines/replay/ReplaySystemInformation.h"
#include "machines/replay/SnapshotParser.h"

#include <utility>

namespace kelvinbar {

ReplayResult makeReplayMachine(std::string_view text, std::shared_ptr<const MonotonicClock> clock) {
    ParsedSnapshot parsed = parseSnapshot(text);
    ReplayResult result{std::nullopt, std::move(parsed.problems)};
    RecordedMachine& recorded = parsed.machine;
    if (recorded.usedLines == 0) return result;
    result.machine = Machine{.source = std::make_shared<ReplaySource>(recorded),
                             .system = std::make_shared<ReplaySystemInformation>(std::move(recorded.facts)),
                             .clock = std::move(clock),
                             .recordedAt = recorded.time};
    return result;
}

} // namespace kelvinbar
