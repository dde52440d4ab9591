#include "tools/ReadingSelection.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "store/SnapshotExport.h"
#include "tools/cost/OwnReadings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace kelvinbar {

namespace {

/// In the order of the categories.
constexpr std::array<std::string_view, allCategories.size()> wordsOfCategories{
    "overview", "cpu",      "gpu",     "memory",  "fans",    "battery", "power",
    "voltages", "currents", "storage", "thermal", "sensors", "other"};

template <typename List, typename Element>
bool isIn(const List& list, const Element& element) {
    return std::ranges::find(list, element) != std::end(list);
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return contains(asciiLowercased(text), asciiLowercased(part));
}

bool hasSelectedCategory(const SMCReading& reading, const ReadingSelection& selection) {
    if (selection.categories.empty() && !selection.hasOwnCategory) return true;
    return isOwnReading(reading) ? selection.hasOwnCategory : isIn(selection.categories, reading.category);
}

bool isSelected(const SMCReading& reading, const ReadingSelection& selection) {
    const bool isByKey = selection.isPinned || !selection.keys.empty();
    if (isByKey && !isIn(selection.keys, reading.key)) return false;
    if (!hasSelectedCategory(reading, selection)) return false;
    return containsIgnoringCase(reading.name, selection.match) ||
           containsIgnoringCase(reading.key, selection.match);
}

bool hasHigherValue(const SMCReading& left, const SMCReading& right) {
    if (left.numericValue.has_value() != right.numericValue.has_value()) return left.numericValue.has_value();
    if (left.unit != right.unit) return left.unit < right.unit;
    return left.numericValue.value_or(0) > right.numericValue.value_or(0);
}

void sortReadings(std::vector<SMCReading>& readings, const ReadingSelection& selection) {
    const auto placeOf = [&](const SMCReading& reading) {
        return std::ranges::find(selection.keys, reading.key) - selection.keys.begin();
    };
    std::ranges::stable_sort(readings, comesBeforeNaturally, &SMCReading::key);
    switch (selection.order) {
    case ReadingOrder::given:
        std::ranges::stable_sort(readings, {}, placeOf);
        break;
    case ReadingOrder::key:
        break;
    case ReadingOrder::name:
        std::ranges::stable_sort(readings, comesBeforeNaturally, &SMCReading::name);
        break;
    case ReadingOrder::value:
        std::ranges::stable_sort(readings, hasHigherValue);
        break;
    case ReadingOrder::category:
        std::ranges::stable_sort(readings, {}, &SMCReading::category);
        break;
    }
}

} // namespace

std::vector<SMCReading> selectedReadings(const std::vector<SMCReading>& readings,
                                         const ReadingSelection& selection) {
    std::vector<SMCReading> selected;
    std::ranges::copy_if(readings, std::back_inserter(selected),
                         [&](const SMCReading& reading) { return isSelected(reading, selection); });
    sortReadings(selected, selection);
    return selected;
}

std::shared_ptr<const KeySet> keysToRead(const std::vector<SMCReading>& readings,
                                         const ReadingSelection& selection) {
    if (selection.isEverything()) return nullptr;
    auto keys = std::make_shared<KeySet>(selection.keys.begin(), selection.keys.end());
    for (const SMCReading& reading : selectedReadings(readings, selection)) {
        if (!isOwnReading(reading)) keys->insert(reading.key);
    }
    return keys;
}

std::vector<std::string> missingKeys(const std::vector<SMCReading>& readings,
                                     const ReadingSelection& selection) {
    std::vector<std::string> missing;
    for (const std::string& key : selection.keys) {
        if (std::ranges::find(readings, key, &SMCReading::key) == readings.end()) missing.push_back(key);
    }
    return missing;
}

std::vector<std::string> unmaskedKeys(std::vector<std::string> keys,
                                      const std::vector<SMCReading>& readings) {
    if (keys.empty()) return keys;
    std::vector<SMCReading> masked = readings;
    maskAddresses(masked);
    for (std::string& key : keys) {
        const auto found = std::ranges::find(masked, key, &SMCReading::key);
        if (found != masked.end()) key = std::next(readings.begin(), found - masked.begin())->key;
    }
    return keys;
}

std::vector<std::string> categoryWords() { return {wordsOfCategories.begin(), wordsOfCategories.end()}; }

std::optional<SMCCategory> categoryNamed(std::string_view text) {
    const std::string wanted = asciiLowercased(text);
    for (std::size_t index = 0; index < allCategories.size(); ++index) {
        const bool isTitle = asciiLowercased(rawValue(allCategories.at(index))) == wanted;
        if (isTitle || wordsOfCategories.at(index) == wanted) return allCategories.at(index);
    }
    return std::nullopt;
}

} // namespace kelvinbar
