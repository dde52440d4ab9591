// Any text as a snapshot. The export of the replayed machine must replay to the same export.

#include "fuzz/Check.h"
#include "fuzz/StandingClock.h"
#include "machines/replay/ReplayMachine.h"
#include "store/LoadPass.h"
#include "store/SnapshotExport.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar::fuzz {

namespace {

std::optional<std::string> exportOf(std::string_view text) {
    const ReplayResult replay = makeReplayMachine(text, std::make_shared<StandingClock>());
    if (!replay.machine) return std::nullopt;
    const auto noKeys = std::make_shared<const KeySet>();
    const LoadPass pass{.fixedCandidates = noKeys,
                        .shouldDiscover = true,
                        .cachedDynamicKeys = noKeys,
                        .readSuperIOFans = true};
    return snapshotText(loadReadings(*replay.machine, pass).readings, {});
}

bool hasReadings(std::string_view snapshot) {
    return snapshot.find("\nActive keys: 0\n") == std::string_view::npos;
}

void replay(std::string_view text) {
    const auto first = exportOf(text);
    if (!first || !hasReadings(*first)) return;
    check(exportOf(*first) == first, "a replayed snapshot exports itself");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    kelvinbar::fuzz::replay(text);
    return 0;
}
