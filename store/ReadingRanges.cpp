#include "store/ReadingRanges.h"

#include <algorithm>
#include <cmath>

namespace kelvinbar {

void ReadingRanges::record(const std::vector<SMCReading>& readings) {
    for (const SMCReading& reading : readings) {
        if (!reading.numericValue || !std::isfinite(*reading.numericValue)) continue;
        const double value = *reading.numericValue;
        ReadingRange& range =
            ranges_.try_emplace(reading.key, ReadingRange{.lowest = value, .highest = value}).first->second;
        range.lowest = std::min(range.lowest, value);
        range.highest = std::max(range.highest, value);
        range.sum += value;
        ++range.count;
    }
}

std::optional<ReadingRange> ReadingRanges::range(std::string_view key) const {
    const auto found = ranges_.find(std::string(key));
    return found == ranges_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace kelvinbar
