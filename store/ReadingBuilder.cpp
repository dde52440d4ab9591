#include "store/ReadingBuilder.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "store/ValueNormalization.h"

#include <utility>

namespace kelvinbar {

namespace {

/// The key of a result that may become a reading, or null.
const std::string* usableKey(const SMCKeyResult& result) {
    const auto* key = result.find<std::string>("key");
    return key != nullptr && characterCount(*key) == 4 ? key : nullptr;
}

bool hasFiniteNumber(const SMCKeyResult& result) {
    return numericValue(result.find("numericValue")).has_value();
}

} // namespace

ResultMap mergedResults(std::vector<SMCKeyResult> candidates, std::vector<SMCKeyResult> registryFans) {
    ResultMap results;
    for (SMCKeyResult& result : candidates) {
        // Candidates come sorted, so the end is the right place nearly always. The key is copied first.
        const std::string* const key = usableKey(result);
        if (key != nullptr) results.insert_or_assign(results.end(), std::string(*key), std::move(result));
    }
    for (SMCKeyResult& result : registryFans) {
        const std::string* const key = usableKey(result);
        if (key == nullptr) continue;
        const auto known = results.find(*key);
        if (known != results.end() && hasFiniteNumber(known->second)) continue;
        results.insert_or_assign(std::string(*key), std::move(result));
    }
    return results;
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
