#include "store/LoadPass.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "smc/NativeMacSupport.h"
#include "smc/SMCBridge.h"
#include "store/ReadingOrder.h"
#include "store/ValueNormalization.h"

#include <map>
#include <utility>

namespace kelvinbar {

namespace {

/// Results in ascending code-unit order of their keys, so that no outcome depends on a hash table.
using ResultMap = std::map<std::string, SMCKeyResult, std::less<>>;

/// The key of a result that may become a reading, or null.
const std::string* usableKey(const SMCKeyResult& result) {
    const auto* key = result.find<std::string>("key");
    return key != nullptr && characterCount(*key) == 4 ? key : nullptr;
}

bool hasFiniteNumber(const SMCKeyResult& result) {
    return numericValue(result.find("numericValue")).has_value();
}

/// A registry fan only fills in a key that the controller did not answer with a real number.
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

/// Nothing for a result without a key and for a key that the catalogue cannot name.
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

std::vector<SMCReading> displayableReadings(const ResultMap& results) {
    std::vector<SMCReading> readings;
    readings.reserve(results.size());
    for (const auto& [key, result] : results) {
        auto reading = buildReading(result);
        if (reading && reading->hasDisplayableValue()) readings.push_back(*std::move(reading));
    }
    return readings;
}

/// The keys that the controller lists and the catalogue can name; the others are never read.
KeySet discoveredNamedKeys() {
    KeySet named;
    for (std::string& key : SMCBridge::discoverKeys()) {
        // Controllers list their keys in ascending order.
        if (SMCKeyDatabase::hwMonitorDefinition(key)) named.insert(named.end(), std::move(key));
    }
    return named;
}

SMCLoadResult withoutController(std::string message) {
    SMCLoadResult result;
    result.readings = NativeMacSupport::readings();
    result.smcAvailable = !result.readings.empty();
    result.statusMessage =
        result.smcAvailable ? "AppleSMC unavailable; showing native macOS telemetry" : std::move(message);
    return result;
}

std::string statusText(std::size_t readingCount) {
    if (readingCount == 0) return "AppleSMC connected, but no compatible sensor key returned a real value";
    return "Loaded " + std::to_string(readingCount) + " HWMonitorSMC2-compatible keys";
}

std::vector<SMCReading> readKeys(const KeySet& keys, bool readSuperIOFans) {
    const std::vector<std::string> candidates(keys.begin(), keys.end());
    std::vector<SMCKeyResult> results = SMCBridge::readCandidateKeys(candidates);
    std::vector<SMCKeyResult> registryFans;
    if (readSuperIOFans) registryFans = SMCBridge::readSMCSuperIOFans();
    return sortedByCategoryAndKey(
        displayableReadings(mergedResults(std::move(results), std::move(registryFans))));
}

} // namespace

SMCLoadResult loadReadings(const KeySet& fixedCandidates, bool shouldDiscover,
                           const KeySet& cachedDynamicKeys, bool readSuperIOFans,
                           const Cancellation& cancellation) {
    const Dictionary status = SMCBridge::status();
    const bool* const available = status.find<bool>("available");
    if (available == nullptr || !*available) {
        return withoutController(status.textOr("message", "AppleSMC unavailable"));
    }

    SMCLoadResult result;
    result.smcAvailable = true;
    if (shouldDiscover) {
        result.discoveredKeys = cancellation.isCancelled() ? cachedDynamicKeys : discoveredNamedKeys();
    }
    if (cancellation.isCancelled()) {
        result.statusMessage = "Refresh cancelled";
        return result;
    }
    const KeySet& dynamicKeys = result.discoveredKeys ? *result.discoveredKeys : cachedDynamicKeys;
    result.readings = readKeys(dynamicKeys.empty() ? fixedCandidates : dynamicKeys, readSuperIOFans);
    result.statusMessage = statusText(result.readings.size());
    return result;
}

} // namespace kelvinbar
