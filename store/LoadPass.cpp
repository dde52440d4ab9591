#include "store/LoadPass.h"

#include "catalogue/SMCKeyDatabase.h"
#include "smc/NativeMacSupport.h"
#include "store/ReadingBuilder.h"
#include "store/ReadingOrder.h"

#include <utility>

namespace kelvinbar {

namespace {

std::vector<SMCReading> displayableReadings(std::vector<RawReading> results) {
    std::vector<SMCReading> readings;
    readings.reserve(results.size());
    for (RawReading& result : results) {
        auto reading = buildReading(std::move(result));
        if (reading && reading->hasDisplayableValue()) readings.push_back(*std::move(reading));
    }
    return readings;
}

/// The keys of the source that have a name. Others are never read.
KeySet discoveredNamedKeys(SensorSource& source) {
    KeySet named;
    for (std::string& key : source.discoverKeys({})) {
        // Most sources list their keys in ascending order, so the hint is usually right.
        if (isSelfNamedKey(key) || SMCKeyDatabase::hwMonitorDefinition(key)) {
            named.insert(named.end(), std::move(key));
        }
    }
    return named;
}

SMCLoadResult withoutSource(const Machine& machine, std::string message) {
    SMCLoadResult result;
    const DeviceVisit visit("system facts", LogCategory::keys);
    if (machine.system != nullptr && visit.isAllowed()) {
        result.readings = NativeMacSupport(*machine.system).readings();
    }
    result.smcAvailable = !result.readings.empty();
    result.statusMessage =
        result.smcAvailable ? std::string(machine.texts.systemFactsOnly) : std::move(message);
    return result;
}

std::vector<SMCReading> readKeys(SensorSource& source, const KeySet& keys, bool readSuperIOFans) {
    const std::vector<std::string> candidates(keys.begin(), keys.end());
    std::vector<RawReading> results = source.readCandidateKeys(candidates);
    std::vector<RawReading> fans;
    if (readSuperIOFans) fans = source.readSMCSuperIOFans();
    return sortedByCategoryAndKey(displayableReadings(mergedResults(std::move(results), std::move(fans))));
}

SMCLoadResult loadedReadings(const Machine& machine, const LoadPass& pass, const Cancellation& cancellation) {
    SensorSource& source = *machine.source;
    SourceStatus status = source.status();
    if (!status.isAvailable) return withoutSource(machine, std::move(status.message));

    SMCLoadResult result;
    result.smcAvailable = true;
    if (pass.shouldDiscover) {
        result.discoveredKeys =
            cancellation.isCancelled() ? *pass.cachedDynamicKeys : discoveredNamedKeys(source);
    }
    if (cancellation.isCancelled()) {
        result.statusMessage = "Refresh cancelled";
        return result;
    }
    if (pass.shouldDiscover) result.keyHistory = source.keyHistory(pass.carryKeysOver);
    const KeySet& dynamicKeys = result.discoveredKeys ? *result.discoveredKeys : *pass.cachedDynamicKeys;
    const KeySet& keys = dynamicKeys.empty() ? *pass.fixedCandidates : dynamicKeys;
    result.readings = readKeys(source, keys, pass.readSuperIOFans);
    result.statusMessage = loadStatus(result.readings.size(), machine.texts);
    return result;
}

} // namespace

std::string loadedText(std::size_t readingCount, const MachineTexts& texts) {
    return "Loaded " + std::to_string(readingCount) + " " + std::string(texts.loaded);
}

std::string loadStatus(std::size_t readingCount, const MachineTexts& texts) {
    return readingCount == 0 ? std::string(texts.nothingReadable) : loadedText(readingCount, texts);
}

SMCLoadResult loadReadings(const Machine& machine, const LoadPass& pass, const Cancellation& cancellation) {
    SMCLoadResult result = loadedReadings(machine, pass, cancellation);
    if (const WatchedPass* const watched = WatchedPass::current()) result.silent = watched->silentDevices();
    return result;
}

} // namespace kelvinbar
