#pragma once

#include "base/Value.h"
#include "catalogue/KeySet.h"
#include "sensors/Machine.h"
#include "tools/ReadingSelection.h"
#include "tools/SnapshotTaker.h"

#include <memory>
#include <vector>

namespace kelvinbar {

/// Reads what a selection takes in again and again, and nothing else. Which keys that are is found out anew
/// whenever all sensors have been read, because devices come and go. Main thread.
class SelectionReader {
  public:
    /// `taker` outlives the object. The keys of a selection of pins are taken from the preferences.
    SelectionReader(SnapshotTaker& taker, ReadingSelection selection);

    /// Opens the machine and reads all of it. As SnapshotTaker::begin.
    Snapshot begin(const Machine& machine, const Dictionary& preferences = {});

    /// Reads again; other readings may be in it besides. As SnapshotTaker::next.
    Snapshot next();

    /// From now on, the pins are those of `preferences`.
    void followPins(const Dictionary& preferences);

    [[nodiscard]] const ReadingSelection& selection() const { return selection_; }

    [[nodiscard]] std::vector<SMCReading> selected(const Snapshot& snapshot) const;

  private:
    void learn(const Snapshot& snapshot);

    SnapshotTaker& taker_;
    ReadingSelection selection_;
    std::shared_ptr<const KeySet> keys_; ///< to read; null for all
};

} // namespace kelvinbar
