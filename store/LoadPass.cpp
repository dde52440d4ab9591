#include "store/LoadPass.h"

#include "catalogue/SMCKeyDatabase.h"
#include "smc/NativeMacSupport.h"
#include "smc/SMCBridge.h"
#include "store/ReadingBuilder.h"
#include "store/ReadingOrder.h"

#include <utility>

namespace kelvinbar {

namespace {

std::vector<SMCReading> displayableReadings(const std::vector<SMCKeyResult>& results) {
    std::vector<SMCReading> readings;
    readings.reserve(results.size());
    for (const SMCKeyResult& result : results) {
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
