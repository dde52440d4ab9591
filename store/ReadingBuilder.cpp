#include "store/ReadingBuilder.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "store/ValueNormalization.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

const std::string& keyOf(const SMCKeyResult& result) {
    static const std::string none;
    const auto* const key = result.find<std::string>("key");
    return key == nullptr ? none : *key;
}

/// Whether a result may become a reading.
bool hasUsableKey(const SMCKeyResult& result) { return characterCount(keyOf(result)) == 4; }

bool hasFiniteNumber(const SMCKeyResult& result) {
    return numericValue(result.find("numericValue")).has_value();
}

/// Sorts `results` by key and keeps the last of each.
void sortByKey(std::vector<SMCKeyResult>& results) {
    // Candidates are read in the order of their keys, each once: nothing is to be done nearly always.
    const auto isOutOfOrder = std::ranges::adjacent_find(results, std::ranges::greater_equal(), keyOf);
    if (isOutOfOrder == results.end()) return;
    std::ranges::stable_sort(results, {}, keyOf);
    const auto haveOneKey = [](const SMCKeyResult& left, const SMCKeyResult& right) {
        return keyOf(left) == keyOf(right);
    };
    const auto rest = std::unique(results.rbegin(), results.rend(), haveOneKey);
    results.erase(results.begin(), rest.base());
}

} // namespace

std::vector<SMCKeyResult> mergedResults(std::vector<SMCKeyResult> candidates,
                                        std::vector<SMCKeyResult> registryFans) {
    std::erase_if(candidates, std::not_fn(hasUsableKey));
    sortByKey(candidates);
    for (SMCKeyResult& fan : registryFans) {
        if (!hasUsableKey(fan)) continue;
        const auto place = std::ranges::lower_bound(candidates, keyOf(fan), {}, keyOf);
        if (place == candidates.end() || keyOf(*place) != keyOf(fan)) {
            candidates.insert(place, std::move(fan));
        } else if (!hasFiniteNumber(*place)) {
            *place = std::move(fan);
        }
    }
    return candidates;
}

std::optional<SMCReading> buildReading(const SMCKeyResult& result) {
    const auto* key = result.find<std::string>("key");
    if (key == nullptr) return std::nullopt;
    auto definition = SMCKeyDatabase::hwMonitorDefinition(*key);
    if (!definition) return std::nullopt;

    std::string unit = result.textOr("unit", definition->unit);
    NormalizedValue normalized =
        normalizeValue(*key, result.textOr("value", ""), numericValue(result.find("numericValue")), unit);
    const auto* category = result.find<std::string>("category");
    const auto named = category == nullptr ? std::nullopt : categoryFromRawValue(*category);
    return SMCReading{.key = *key,
                      .name = result.textOr("name", definition->name),
                      .category = named.value_or(definition->category),
                      .type = result.textOr("type", ""),
                      .value = std::move(normalized.value),
                      .numericValue = normalized.numeric,
                      .unit = std::move(unit),
                      .raw = result.textOr("raw", ""),
                      .status = result.textOr("status", "OK")};
}

} // namespace kelvinbar
