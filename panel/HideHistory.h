#pragma once

#include "catalogue/SMCReading.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

class KelvinbarStore;

/// Hides readings so that it can be undone, with the pin and its place among the others. Forgets what was
/// shown again by other means. Main thread.
class HideHistory {
  public:
    void hide(KelvinbarStore& store, const SMCReading& reading);

    /// Shows the reading again that was hidden last, and pins it where it was pinned, unless as many others
    /// are pinned as fit. Does nothing if there is none.
    void undo(KelvinbarStore& store);

  private:
    struct Entry {
        std::string key;
        std::optional<std::size_t> pin; ///< its place among the pins
    };

    void forgetShown(const KelvinbarStore& store);

    std::vector<Entry> entries_; ///< the last one at the end
};

/// The readings that are hidden, in natural order of their names. They point into the store and dangle when
/// its readings change.
std::vector<const SMCReading*> hiddenReadings(const KelvinbarStore& store);

} // namespace kelvinbar
