// Any text as a snapshot. The export of the replayed machine must replay to the same export.

#include "base/Text.h"
#include "fuzz/Check.h"
#include "fuzz/StandingClock.h"
#include "machines/replay/ReplayMachine.h"
#include "sensors/RawReading.h"
#include "store/LoadPass.h"
#include "store/SnapshotExport.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

std::optional<std::vector<SMCReading>> replayedReadings(std::string_view text) {
    const ReplayResult replay = makeReplayMachine(text, std::make_shared<StandingClock>());
    if (!replay.machine) return std::nullopt;
    const auto noKeys = std::make_shared<const KeySet>();
    const LoadPass pass{.fixedCandidates = noKeys,
                        .shouldDiscover = true,
                        .cachedDynamicKeys = noKeys,
                        .readSuperIOFans = true};
    return loadReadings(*replay.machine, pass).readings;
}

/// Whether keys of sensors cannot be told apart, or sorted, once they are masked. No machine has the same
/// address in two spellings.
bool hasOneMaskTwice(std::vector<SMCReading> readings) {
    maskAddresses(readings);
    std::set<std::string> keys;
    return std::ranges::any_of(readings, [&](const SMCReading& reading) {
        return isSelfNamedKey(reading.key) && !keys.insert(asciiLowercased(reading.key)).second;
    });
}

void replay(std::string_view text) {
    const auto readings = replayedReadings(text);
    if (!readings || readings->empty() || hasOneMaskTwice(*readings)) return;
    const std::string first = snapshotText(*readings, {});
    const auto again = replayedReadings(first);
    check(again && snapshotText(*again, {}) == first, "a replayed snapshot exports itself");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    kelvinbar::fuzz::replay(text);
    return 0;
}
