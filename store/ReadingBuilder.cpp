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

/// Whether a result may become a reading.
bool hasUsableKey(const RawReading& result) {
    return characterCount(result.key) == 4 || isSelfNamedKey(result.key);
}

/// Sorts `results` by key and keeps the last of each.
void sortByKey(std::vector<RawReading>& results) {
    // Candidates are read in order and without duplicates, so there is nearly always nothing to do.
    const auto isOutOfOrder =
        std::ranges::adjacent_find(results, std::ranges::greater_equal(), &RawReading::key);
    if (isOutOfOrder == results.end()) return;
    std::ranges::stable_sort(results, {}, &RawReading::key);
    const auto haveOneKey = [](const RawReading& left, const RawReading& right) {
        return left.key == right.key;
    };
    const auto rest = std::unique(results.rbegin(), results.rend(), haveOneKey);
    results.erase(results.begin(), rest.base());
}

/// Supplies what the result itself lacks.
std::optional<SMCKeyDefinition> definitionOf(const RawReading& result) {
    if (!isSelfNamedKey(result.key)) return SMCKeyDatabase::hwMonitorDefinition(result.key);
    if (!result.name || !result.category || !result.unit) return std::nullopt;
    return SMCKeyDefinition{.key = {}, .name = {}, .category = SMCCategory::sensors, .unit = {}};
}

} // namespace

std::vector<RawReading> mergedResults(std::vector<RawReading> candidates,
                                      std::vector<RawReading> registryFans) {
    std::erase_if(candidates, std::not_fn(hasUsableKey));
    sortByKey(candidates);
    for (RawReading& fan : registryFans) {
        if (!hasUsableKey(fan)) continue;
        const auto place = std::ranges::lower_bound(candidates, fan.key, {}, &RawReading::key);
        if (place == candidates.end() || place->key != fan.key) {
            candidates.insert(place, std::move(fan));
        } else if (!numericValue(place->numericValue)) {
            *place = std::move(fan);
        }
    }
    return candidates;
}

std::optional<SMCReading> buildReading(RawReading result) {
    auto definition = definitionOf(result);
    if (!definition) return std::nullopt;
    std::string unit = result.unit ? *std::move(result.unit) : std::move(definition->unit);
    NormalizedValue normalized =
        normalizeValue(result.key, std::move(result.value), numericValue(result.numericValue), unit);
    const auto named = result.category ? categoryFromRawValue(*result.category) : std::nullopt;
    return SMCReading{.key = std::move(result.key),
                      .name = result.name ? *std::move(result.name) : std::move(definition->name),
                      .category = named.value_or(definition->category),
                      .type = std::move(result.type),
                      .value = std::move(normalized.value),
                      .numericValue = normalized.numeric,
                      .unit = std::move(unit),
                      .raw = std::move(result.raw),
                      .status = std::move(result.status)};
}

} // namespace kelvinbar
