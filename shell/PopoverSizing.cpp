#include "shell/PopoverSizing.h"

#include "store/VisibleReadings.h"

#include <algorithm>
#include <bitset>
#include <cstdlib>

namespace kelvinbar {

namespace {

constexpr double screenMargin = 80; ///< total of both sides, for the width and for the height

/// Points that the panel needs without cards, and for each card and each row.
constexpr long long baseHeight = 246;
constexpr long long cardHeight = 62;
constexpr long long rowHeight = 47;

long long product(long long left, long long right) {
    long long result = 0;
    if (__builtin_mul_overflow(left, right, &result)) std::abort();
    return result;
}

long long sum(long long left, long long right) {
    long long result = 0;
    if (__builtin_add_overflow(left, right, &result)) std::abort();
    return result;
}

} // namespace

double dynamicPopoverHeight(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys) {
    long long rows = 0;
    std::bitset<allCategories.size()> categories;
    for (const SMCReading& reading : readings) {
        if (!isVisibleReading(reading, hiddenKeys)) continue;
        ++rows;
        categories.set(static_cast<std::size_t>(reading.category));
    }
    const auto groups = static_cast<long long>(categories.count());
    return static_cast<double>(sum(baseHeight, sum(product(cardHeight, groups), product(rowHeight, rows))));
}

Size targetPopoverSize(const PopoverSizing& sizing) {
    const auto [leastWidth, leastHeight] = minimumPopoverSize;
    const double greatestHeight = std::max(sizing.visibleFrame.height - screenMargin, leastHeight);
    double height = std::min(greatestHeight, std::max(sizing.manualPopoverHeight, leastHeight));
    if (sizing.displayMode == SMCWindowDisplayMode::dynamic) {
        const double estimate = dynamicPopoverHeight(sizing.readings, sizing.hiddenKeys);
        height = std::min(greatestHeight, std::max(height, estimate));
    }
    const double width =
        std::min(fixedPopoverSize.width, std::max(leastWidth, sizing.visibleFrame.width - screenMargin));
    return {width, height};
}

} // namespace kelvinbar
