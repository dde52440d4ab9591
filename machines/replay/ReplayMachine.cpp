#include "machines/replay/ReplayMachine.h"

#include "machines/emulated/EmulatedSMCDriver.h"
#include "machines/replay/RecordedKeys.h"
#include "machines/replay/ReplayRegistry.h"
#include "machines/replay/ReplaySystemInformation.h"
#include "machines/replay/SnapshotParser.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

ReplayResult makeReplayMachine(std::string_view text, std::shared_ptr<const MonotonicClock> clock) {
    ParsedSnapshot parsed = parseSnapshot(text);
    RecordedMachine& recorded = parsed.machine;
    ReplayRegistryResult registry = makeReplayRegistry(recorded.fans);

    ReplayResult result{std::nullopt, std::move(parsed.problems)};
    std::ranges::move(registry.problems, std::back_inserter(result.problems));
    std::ranges::sort(result.problems, {}, &LineProblem::lineNumber);

    const std::size_t usableFans = recorded.fans.size() - registry.problems.size();
    if (recorded.usedLines == registry.problems.size()) return result;
    const bool hasService = !recorded.keys.empty() || usableFans > 0;
    result.machine = Machine{.driver = std::make_shared<EmulatedSMCDriver>(
                                 std::make_unique<RecordedKeys>(std::move(recorded.keys), hasService)),
                             .registry = std::move(registry.registry),
                             .system = std::make_shared<ReplaySystemInformation>(std::move(recorded.facts)),
                             .clock = std::move(clock)};
    return result;
}

} // namespace kelvinbar
