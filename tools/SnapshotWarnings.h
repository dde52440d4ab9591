#pragma once

#include "tools/ReadingSelection.h"
#include "tools/SnapshotTaker.h"

#include <set>
#include <string>
#include <vector>

/// What standard error says of a snapshot. Main thread.
namespace kelvinbar {

/// Names keys of the selection that no reading has.
void reportMissingKeys(const std::vector<SMCReading>& readings, const ReadingSelection& selection);

/// Likewise, and returns whether `selection` leaves something to print, or selects everything; says why not.
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
