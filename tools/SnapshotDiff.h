#pragma once

#include "catalogue/SMCReading.h"

#include <string>
#include <vector>

/// What two snapshots of a machine differ in. Pure functions; any thread.
namespace kelvinbar {

/// A key that both snapshots have.
struct ReadingPair {
    SMCReading before;
    SMCReading after;
};

/// Each list is sorted by key in natural order.
struct SnapshotDiff {
    std::vector<SMCReading> appeared;
    std::vector<SMCReading> vanished;
    std::vector<ReadingPair> renamed; ///< the name is another; the value may be, too
    std::vector<ReadingPair> changed; ///< value or unit is another

    [[nodiscard]] bool isEmpty() const {
        return appeared.empty() && vanished.empty() && renamed.empty() && changed.empty();
    }
};

/// Numbers of one unit differ if they are more than `tolerance` apart, in that unit; other values if their
/// texts differ. `tolerance` is not negative.
SnapshotDiff diffOf(const std::vector<SMCReading>& before, const std::vector<SMCReading>& after,
                    double tolerance);

/// One line a difference in aligned columns: "+" for a reading that appeared, "-" for one that vanished, "="
/// for another name and "~" for another value. Empty without differences.
std::string diffText(const SnapshotDiff& diff);

/// The same as a JSON object with a list for each kind.
std::string diffJson(const SnapshotDiff& diff);

} // namespace kelvinbar
