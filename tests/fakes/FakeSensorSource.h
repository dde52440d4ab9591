#pragma once

#include "sensors/SensorSource.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar::fakes {

/// A source that a test scripts. It counts what it is asked and whether it is open.
class FakeSensorSource final : public SensorSource {
  public:
    bool isAvailable = true;
    std::string message = "Sensors connected";
    std::vector<RawReading> readings; ///< listed in this order, and read by their keys
    std::vector<RawReading> fans;

    int openCount = 0;
    int closeCount = 0;
    int discoveryCount = 0;
    int fanReadCount = 0;
    std::vector<std::vector<std::string>> readKeys; ///< the keys of each read

    SourceStatus status() override {
        if (isAvailable && !std::exchange(isOpen_, true)) ++openCount;
        return {.isAvailable = isAvailable, .message = message};
    }

    std::vector<std::string> discoverKeys(const KeySet& /*listedBefore*/) override {
        ++discoveryCount;
        std::vector<std::string> keys;
        for (const RawReading& reading : readings) keys.push_back(reading.key);
        return keys;
    }

    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override {
        readKeys.emplace_back(keys.begin(), keys.end());
        std::vector<RawReading> read;
        for (const std::string& key : keys) {
            const auto found = std::ranges::find(readings, key, &RawReading::key);
            if (found != readings.end()) read.push_back(*found);
        }
        return read;
    }

    std::vector<RawReading> readSMCSuperIOFans() override {
        ++fanReadCount;
        return fans;
    }

    void close() override {
        if (std::exchange(isOpen_, false)) ++closeCount;
    }

  private:
    bool isOpen_ = false;
};

} // namespace kelvinbar::fakes
