#include "store/ReadingOrder.h"

#include "base/NaturalOrder.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

bool keyComesBefore(const SMCReading* left, const SMCReading* right) {
    return comesBeforeNaturally(left->key, right->key);
}

bool categoryAndKeyComeBefore(const SMCReading* left, const SMCReading* right) {
    if (left->category == right->category) return keyComesBefore(left, right);
    return rawValue(left->category) < rawValue(right->category);
}

} // namespace

std::vector<SMCReading> sortedByCategoryAndKey(std::vector<SMCReading> readings) {
    // Pointers are sorted: a reading is large to move at every step.
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
