#pragma once

#include "base/Queues.h"
#include "catalogue/SMCReading.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelvinbar {

/// Keys in ascending code-unit order.
using KeySet = std::set<std::string, std::less<>>;

/// What one pass over the machine hands to the main thread.
struct SMCLoadResult {
    bool smcAvailable =
        false; ///< the pass had a source of readings: the controller, or what stands in for it
    std::vector<SMCReading> readings;     ///< sorted; native readings in their own order
    std::optional<KeySet> discoveredKeys; ///< only when the pass was asked to discover
    std::string statusMessage;            ///< for people
};

/// Reads the machine once. `cachedDynamicKeys` are read, or those that discovery finds and the catalogue can
/// name when `shouldDiscover`; `fixedCandidates` when there are none of these. Blocks; touches no store
/// state; any thread. A cancelled pass gives no readings, but reading keys, once begun, goes on to its end.
SMCLoadResult loadReadings(const KeySet& fixedCandidates, bool shouldDiscover,
                           const KeySet& cachedDynamicKeys, bool readSuperIOFans,
                           const Cancellation& cancellation = {});

} // namespace kelvinbar
