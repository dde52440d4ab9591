#pragma once

#include "sensors/SensorSource.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar::fakes {

/// A source over a list of readings. Records every request.
class FakeSensorSource final : public SensorSource {
  public:
    SourceStatus state{.isAvailable = true, .message = "connected"};
    std::vector<RawReading> readings;
    std::vector<RawReading> fans;
    KeyHistory history;
    std::vector<SourceReport> reports;
    std::vector<std::string> unlistedKeys; ///< readable, but not discovered

    std::vector<KeySet> listedBefore; ///< of each discovery
    std::vector<std::vector<std::string>> requests;
    int statusCount = 0;
    int closeCount = 0;
    int formerKeysCount = 0; ///< how often they were asked for

    /// Adds a reading of `key` whose value is `value`.
    FakeSensorSource& add(std::string key, std::string value) {
        RawReading reading;
        reading.key = std::move(key);
        reading.value = std::move(value);
        readings.push_back(std::move(reading));
        return *this;
    }

    SourceStatus status() override {
        ++statusCount;
        return state;
    }

    std::vector<std::string> discoverKeys(const KeySet& before) override {
        listedBefore.push_back(before);
        std::vector<std::string> keys;
        for (const RawReading& reading : readings) {
            if (std::ranges::find(unlistedKeys, reading.key) == unlistedKeys.end()) {
                keys.push_back(reading.key);
            }
        }
        return keys;
    }

    KeyHistory keyHistory(bool withFormerKeys) override {
        if (withFormerKeys) ++formerKeysCount;
        return {.places = history.places, .formerKeys = withFormerKeys ? history.formerKeys : std::nullopt};
    }

    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override {
        requests.emplace_back(keys.begin(), keys.end());
        std::vector<RawReading> found;
        for (const std::string& key : keys) {
            const auto reading = std::ranges::find(readings, key, &RawReading::key);
            if (reading != readings.end()) found.push_back(*reading);
        }
        return found;
    }

    std::vector<SourceReport> report() override { return reports; }

    std::vector<RawReading> readSMCSuperIOFans() override { return fans; }

    void close() override { ++closeCount; }
};

} // namespace kelvinbar::fakes
