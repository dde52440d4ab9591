#pragma once

#include "sensors/Machine.h"
#include "tools/FollowedPreferences.h"
#include "tools/SelectionReader.h"
#include "tools/SnapshotCommandLine.h"
#include "tools/SnapshotTaker.h"
#include "tools/SnapshotWarnings.h"
#include "tools/cost/OwnCost.h"

#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// Prints the selected readings of a machine, once or again and again. What goes wrong is said on standard
/// error. One use; main thread.
class SnapshotPrinter {
  public:
    /// The arguments outlive the object.
    SnapshotPrinter(const SnapshotOptions& options, const Machine& machine, SnapshotTaker& taker);

    /// Reads and prints as the options say; returns the exit status. Throws std::bad_alloc if there is not
    /// enough memory for the first snapshot.
    int print();

  private:
    int printOnce(const Snapshot& snapshot);
    int printUntilEnded(const Snapshot& first);
    [[nodiscard]] Snapshot nextSnapshot();
    [[nodiscard]] bool reportWhatIsMissing(const Snapshot& snapshot) const;
    [[nodiscard]] std::string statusOf(const Snapshot& snapshot,
                                       const std::vector<SMCReading>& selected) const;
    [[nodiscard]] Report reportOf(const Snapshot& snapshot) const;
    [[nodiscard]] Snapshot withOwnCost(Snapshot snapshot);
    [[nodiscard]] std::string onScreen(const std::string& page) const;

    const SnapshotOptions& options_;
    const Machine& machine_;
    SnapshotTaker& taker_;
    SelectionReader reader_;
    FollowedPreferences preferences_;
    FormatSettings settings_;
    bool isDrawnInPlace_;            ///< a page, over the one before
    std::optional<OwnCost> ownCost_; ///< if it is printed
    SilenceReport silence_;
};

} // namespace kelvinbar
