#pragma once

#include "base/Clock.h"
#include "sensors/SensorSource.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kelvinbar {

/// A recorded source whose values move as on a machine at work: temperatures, power, currents and clocks
/// follow a load, fans follow the heat, voltages waver. The raw text moves with the value. What is constant
/// on a real machine and what has no number, such as a device asleep, stays as it was recorded.
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
