#pragma once

#include "base/Clock.h"
#include "machines/linux/applesmc/SMCKeySource.h"
#include "machines/linux/files/SensorFile.h"
#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/sources/SensorValue.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelvinbar {

/// Whether a device sleeps to save power. A reading would wake it. Asked of the kernel at most once in
/// `validity`, however many channels the device has. Usable from several threads.
class DevicePower {
  public:
    static constexpr std::chrono::milliseconds validity{50};

    DevicePower(const std::vector<std::filesystem::path>& states,
                std::shared_ptr<const MonotonicClock> clock);

    [[nodiscard]] bool isAsleep() const;

  private:
    [[nodiscard]] bool askKernel() const;

    std::vector<std::shared_ptr<const SensorFile>> states_;
    std::shared_ptr<const MonotonicClock> clock_;
    mutable std::atomic<std::int64_t> askedAt_; ///< nanoseconds of the clock
    mutable std::atomic<bool> wasAsleep_{false};
};

/// The power at which an energy counter grows.
class PowerMeter {
  public:
    /// Two readings that are closer together than this tell no power: the counter moves in steps.
    static constexpr std::chrono::milliseconds shortestTime{20};

    /// `range` is where the counter begins anew, in joules; 0 where that is not known.
    explicit PowerMeter(double range) : range_(range) {}

    /// How long to wait until a first reading of the counter can tell a power.
    [[nodiscard]] std::chrono::nanoseconds timeToFirstPower(std::chrono::nanoseconds now) const;

    /// The mean power since the last call, in watts; nothing at the first call, and where the counter went
    /// back without a known range. Within `shortestTime` of the last reading, what that one gave.
    std::optional<double> powerAt(double joules, std::chrono::nanoseconds now);

  private:
    static constexpr double mostPower = 2000; ///< watts, of one processor or card

    [[nodiscard]] std::optional<double> powerOf(double growth, double seconds) const;

    double range_;
    std::optional<double> joules_;
    std::chrono::nanoseconds time_{0};
    std::optional<double> power_;
};

/// A channel with its files open, to be read again and again.
class LiveSensor {
  public:
    /// `power` is null for a device that never sleeps.
    LiveSensor(const SensorChannel& channel, std::shared_ptr<const DevicePower> power,
               std::shared_ptr<const MonotonicClock> clock);

    /// The value in the unit of the channel's kind. Nothing when it cannot be read, is marked as faulty, is
    /// none that the kind can have, or when the device sleeps. One thread at a time for energy counters,
    /// any for the others. The first power of a counter takes a moment.
    [[nodiscard]] std::optional<double> value() const;

    /// The bytes of the value in a data type of controllers.
    [[nodiscard]] std::optional<SMCBytes> bytes(const SensorType& type) const;

    /// Begins to meter an energy counter, or goes on with the meter of `earlier` (may be null).
    void meter(const LiveSensor* earlier);

  private:
    [[nodiscard]] std::optional<std::int64_t> number() const;
    [[nodiscard]] bool isTrustworthy() const;
    [[nodiscard]] std::optional<double> meteredPower() const;
    [[nodiscard]] std::optional<SMCBytes> textBytes() const;

    SensorKind kind_;
    double countsPerUnit_;
    std::string text_;
    std::shared_ptr<const SensorFile> file_;  ///< null for a value that does not change
    std::shared_ptr<const SensorFile> fault_; ///< null without one
    std::shared_ptr<const DevicePower> power_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::shared_ptr<PowerMeter> meter_; ///< of an energy counter only
};

} // namespace kelvinbar
