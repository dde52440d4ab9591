#pragma once

#include "base/Clock.h"
#include "sensors/SensorSource.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kelvinbar {

/// A source that animates a recorded one. Temperatures, power, currents and clocks follow a simulated load,
/// fans follow the heat, voltages fluctuate slightly. The raw text changes with the value. Values that are
/// constant on a real machine, and those without a number (a device that sleeps), stay as recorded.
///
/// Values depend on the clock alone. Any thread, if the recorded source allows it.
class DemoSource final : public SensorSource {
  public:
    DemoSource(std::shared_ptr<SensorSource> recorded, std::shared_ptr<const MonotonicClock> clock);

    SourceStatus status() override { return recorded_->status(); }

    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override {
        return recorded_->discoverKeys(listedBefore);
    }

    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    std::vector<RawReading> readSMCSuperIOFans() override { return recorded_->readSMCSuperIOFans(); }

    void close() override { recorded_->close(); }

  private:
    enum class Motion : std::uint8_t { none, heat, fan, work, clock, rail };

    [[nodiscard]] static Motion motionOfSensor(std::string_view key);
    [[nodiscard]] static Motion motionOfControllerKey(const std::string& key);
    [[nodiscard]] double factor(Motion motion, std::uint32_t seed) const;
    void moveSensor(RawReading& reading) const;
    void moveControllerKey(RawReading& reading) const;

    std::shared_ptr<SensorSource> recorded_;
    std::shared_ptr<const MonotonicClock> clock_;
};

} // namespace kelvinbar
