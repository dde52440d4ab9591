#pragma once

#include "tools/ReadingSelection.h"
#include "tools/SnapshotTaker.h"

#include <set>
#include <string>
#include <vector>

/// What standard error says of a snapshot. Main thread.
namespace kelvinbar {

/// Returns whether `selection` leaves something to print, or selects everything; says why not. Names keys
/// that no reading has.
bool reportSelection(const std::vector<SMCReading>& readings, const ReadingSelection& selection);

/// Names devices that do not answer.
class SilenceReport {
  public:
    /// Names each device once, until it has answered again.
    void report(const std::vector<SilentDevice>& silent);

  private:
    std::set<std::string> files_; ///< that were named
};

} // namespace kelvinbar
