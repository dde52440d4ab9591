#include "store/ReadingOrder.h"

#include "base/NaturalOrder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace kelvinbar {

namespace {

bool keyComesBefore(const SMCReading* left, const SMCReading* right) {
    return comesBeforeNaturally(left->key, right->key);
}

/// The rank of each category when sorted by title.
std::array<std::size_t, allCategories.size()> titlePlaces() {
    auto byTitle = allCategories;
    std::ranges::sort(byTitle, {}, rawValue);
    std::array<std::size_t, allCategories.size()> places{};
    for (std::size_t place = 0; place < byTitle.size(); ++place) {
        places[static_cast<std::size_t>(byTitle[place])] = place;
    }
    return places;
}

bool categoryAndKeyComeBefore(const SMCReading* left, const SMCReading* right) {
    static const auto places = titlePlaces();
    if (left->category == right->category) return keyComesBefore(left, right);
    return places[static_cast<std::size_t>(left->category)] <
           places[static_cast<std::size_t>(right->category)];
}

} // namespace

std::vector<SMCReading> sortedByCategoryAndKey(std::vector<SMCReading> readings) {
    // Sort pointers: readings are expensive to move.
    std::vector<SMCReading*> order;
    order.reserve(readings.size());
    for (SMCReading& reading : readings) order.push_back(&reading);
    std::ranges::stable_sort(order, categoryAndKeyComeBefore);

    std::vector<SMCReading> sorted;
    sorted.reserve(readings.size());
    for (SMCReading* const reading : order) sorted.push_back(std::move(*reading));
    return sorted;
}

std::vector<const SMCReading*> sortedByKey(const std::vector<SMCReading>& readings) {
    std::vector<const SMCReading*> order;
    order.reserve(readings.size());
    for (const SMCReading& reading : readings) order.push_back(&reading);
    std::ranges::stable_sort(order, keyComesBefore);
    return order;
}

} // namespace kelvinbar
