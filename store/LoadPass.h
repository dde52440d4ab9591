#pragma once

#include "base/Queues.h"
#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"
#include "sensors/Machine.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// What one pass over the machine is to read. No set is null.
struct LoadPass {
    std::shared_ptr<const KeySet> fixedCandidates; ///< read while discovery has found nothing
    bool shouldDiscover = false;
    std::shared_ptr<const KeySet> cachedDynamicKeys; ///< what the last discovery found
    bool readSuperIOFans = false;
    bool carryKeysOver = false; ///< whether the keys of version 0.1 are asked for
};

/// What one pass hands to the main thread.
struct SMCLoadResult {
    bool smcAvailable = false; ///< whether there was anything to read: a source, or the system's own facts
    std::vector<SMCReading> readings;     ///< sorted, except for native readings
    std::optional<KeySet> discoveredKeys; ///< present only when the pass was asked to discover
    std::optional<KeyHistory> keyHistory; ///< present only when the pass discovered
    std::string statusMessage;            ///< for people
};

/// Reads `machine` once. Blocks; touches no store state; any thread. A cancelled pass returns no readings,
/// but once it has begun to read keys it reads all of them.
SMCLoadResult loadReadings(const Machine& machine, const LoadPass& pass,
                           const Cancellation& cancellation = {});

} // namespace kelvinbar
