#pragma once

#include "catalogue/SMCReading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// The values of one reading so far, in its unit.
struct ReadingRange {
    double lowest = 0;
    double highest = 0;
    double sum = 0;
    std::uint32_t count = 0; ///< at least 1 in a range that was recorded

    /// Of all recorded values, however far apart in time.
    [[nodiscard]] double mean() const { return sum / count; }
};

/// Lowest, highest and mean value of each reading since the program started. Nothing is read for it: it
/// records what passes read anyway, in some bytes a key. It forgets no key. Main thread.
class ReadingRanges {
  public:
    /// Ignores readings without a finite number.
    void record(const std::vector<SMCReading>& readings);

    /// No value if `key` has had no number.
    [[nodiscard]] std::optional<ReadingRange> range(std::string_view key) const;

  private:
    std::unordered_map<std::string, ReadingRange> ranges_; ///< by key
};

} // namespace kelvinbar
