#include "machines/replay/ReplaySource.h"

#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

std::optional<RawReading> decoded(const RecordedKey& key) {
    SMCParamBlock block;
    block.dataSize = static_cast<std::uint32_t>(key.bytes.size());
    block.dataType = key.dataType;
    std::ranges::copy(key.bytes, block.bytes.begin());
    return dictionaryForKey(fourCharString(key.code), block);
}

} // namespace

ReplaySource::ReplaySource(const RecordedMachine& recorded) : fans_(recorded.fans) {
    for (const RecordedKey& key : recorded.keys) {
        if (auto reading = decoded(key)) add(*std::move(reading));
    }
    for (const RawReading& sensor : recorded.sensors) add(sensor);
}

void ReplaySource::add(RawReading reading) {
    if (places_.try_emplace(reading.key, readings_.size()).second) readings_.push_back(std::move(reading));
}

SourceStatus ReplaySource::status() {
    const bool isAvailable = !readings_.empty() || !fans_.empty();
    return {.isAvailable = isAvailable,
            .message = isAvailable ? "Snapshot replayed" : "The snapshot holds system facts alone"};
}

std::vector<std::string> ReplaySource::discoverKeys(const KeySet& /*listedBefore*/) {
    std::vector<std::string> keys;
    keys.reserve(readings_.size());
    for (const RawReading& reading : readings_) keys.push_back(reading.key);
    return keys;
}

std::vector<RawReading> ReplaySource::readCandidateKeys(std::span<const std::string> keys) {
    std::vector<RawReading> readings;
    std::unordered_set<std::string_view> seen;
    for (const std::string& key : keys) {
        const auto place = places_.find(key);
        if (place != places_.end() && seen.insert(key).second) readings.push_back(readings_[place->second]);
    }
    return readings;
}

} // namespace kelvinbar
