#pragma once

#include "machines/replay/RecordedMachine.h"
#include "smc/IORegistry.h"

#include <memory>
#include <vector>

namespace kelvinbar {

struct ReplayRegistryResult {
    std::shared_ptr<IORegistry> registry;
    std::vector<LineProblem> problems; ///< fans that no registry can show so
};

/// A registry in which the walk for fans finds the recorded ones: same key, name, speed and raw text. A fan
/// that no walk can have found so (an edited line) keeps name and speed where that is possible.
///
/// The walk numbers the fans that it accepts, and derives from the number either the key ("FAN3" for a
/// property of any name) or the name ("Fan 3" for a property named like a key). So each fan has to stand at
/// one certain place; places that the snapshot does not show are filled with properties that the walk counts
/// but under whose keys the catalogue knows nothing.
ReplayRegistryResult makeReplayRegistry(const std::vector<RecordedFan>& fans);

} // namespace kelvinbar
