#pragma once

#include "base/Queues.h"
#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"
#include "sensors/Machine.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// What one pass reads. No pointer is null.
struct LoadPass {
    std::shared_ptr<const KeySet> fixedCandidates; ///< read if no discovery has found any key
    bool shouldDiscover = false;
    std::shared_ptr<const KeySet> cachedDynamicKeys; ///< found by the last discovery
    bool readSuperIOFans = false;
    bool carryKeysOver = false; ///< also ask for the keys of version 0.1
};

/// The result of one pass, applied by the store on the main thread.
struct SMCLoadResult {
    bool smcAvailable = false;            ///< whether the source or the system's own facts could be read
    std::vector<SMCReading> readings;     ///< sorted, except for native readings
    std::optional<KeySet> discoveredKeys; ///< only if the pass was to discover
    std::optional<KeyHistory> keyHistory; ///< only if the pass did discover
    std::vector<SilentDevice> silent; ///< devices that were not read because they have not answered before
    std::string statusMessage;        ///< user-visible
};

/// What a pass says that has loaded `readingCount` readings: "Loaded 3 sensors".
std::string loadedText(std::size_t readingCount, const MachineTexts& texts);

/// The status of a pass over a source that can be read: the same, unless there are no readings.
std::string loadStatus(std::size_t readingCount, const MachineTexts& texts);

/// Reads `machine` once. Blocks until the hardware has answered. Does not touch the store. A cancelled pass
/// returns no readings, but does not stop while it reads keys. Any thread; inside a scope of the machine's
/// watch, devices that do not answer are left out.
SMCLoadResult loadReadings(const Machine& machine, const LoadPass& pass,
                           const Cancellation& cancellation = {});

} // namespace kelvinbar
