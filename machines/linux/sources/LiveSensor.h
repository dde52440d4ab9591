#pragma once

#include "base/Clock.h"
#include "machines/linux/files/SensorFile.h"
#include "machines/linux/libsensors/ConfiguredValue.h"
#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/sources/SensorValue.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Whether a device sleeps to save power. Reading its sensors would wake it. Asks the kernel at most once in
/// `validity`, however many channels the device has. Any thread.
class DevicePower {
  public:
    static constexpr std::chrono::milliseconds validity{50};

    DevicePower(const std::vector<std::filesystem::path>& states, SensorFiles& files,
                std::shared_ptr<const MonotonicClock> clock);

    [[nodiscard]] bool isAsleep() const;

  private:
    [[nodiscard]] bool askKernel() const;

    std::vector<std::shared_ptr<const SensorFile>> states_;
    std::shared_ptr<const MonotonicClock> clock_;
    mutable std::atomic<std::int64_t> askedAt_; ///< nanoseconds of the clock
    mutable std::atomic<bool> wasAsleep_{false};
};

/// The power at which an energy counter grows. Any thread.
class PowerMeter {
  public:
    /// The counter moves in steps, so readings that are closer together than this yield no power.
    static constexpr std::chrono::milliseconds shortestTime{20};

    /// `range` is where the counter wraps around, in joules; 0 where that is unknown.
    explicit PowerMeter(double range) : range_(range) {}

    /// How long to wait until the second reading of the counter yields a power.
    [[nodiscard]] std::chrono::nanoseconds timeToFirstPower(std::chrono::nanoseconds now) const;

    /// The mean power since the last call, in watts. Nothing at the first call, and when the counter went
    /// back without a known range. Within `shortestTime` of the last reading, that reading's power.
    std::optional<double> powerAt(double joules, std::chrono::nanoseconds now);

  private:
    static constexpr double mostPower = 2000; ///< watts, of one processor or card

    [[nodiscard]] std::optional<double> powerOf(double growth, double seconds) const;

    const double range_;
    mutable std::mutex mutex_; ///< guards what follows
    std::optional<double> joules_;
    std::chrono::nanoseconds time_{0};
    std::optional<double> power_;
};

/// What one read of a channel returns.
struct SensorSample {
    std::optional<double> number; ///< in the unit of the channel's kind
    std::string text;             ///< of a channel without a number, and of a device that sleeps
    std::string raw;              ///< the file's own text
    bool isAsleep = false;
};

/// A channel with its files open, to be read again and again. Any thread.
class LiveSensor {
  public:
    /// `power` is null for a device that never sleeps. Values outside `range` are not possible.
    LiveSensor(const SensorChannel& channel, ValueRange range, SensorFiles& files,
               std::shared_ptr<const DevicePower> power, std::shared_ptr<const MonotonicClock> clock);

    /// Nothing when the file cannot be read, the driver marks the channel as faulty, or the value is not
    /// possible. A device that sleeps is not read, and not woken. The first power of an energy counter takes
    /// up to 20 ms.
    [[nodiscard]] std::optional<SensorSample> read() const;

    /// From now on, values are what the configuration makes of the file's; null changes nothing. Reads the
    /// channel once if it is not known yet whether the configuration computes its value, unless the device
    /// sleeps: then the first value after that decides. Called before `meter`.
    void configure(std::shared_ptr<const ConfiguredValue> configured);

    /// Begins to meter an energy counter, or continues with the meter of `earlier`, which may be null.
    void meter(const LiveSensor* earlier);

  private:
    [[nodiscard]] bool isFaulty() const;
    [[nodiscard]] static std::optional<SensorSample> readText(std::string_view line);
    [[nodiscard]] std::optional<SensorSample> readNumber(std::string_view line) const;
    [[nodiscard]] std::optional<double> fileValue() const;
    [[nodiscard]] std::optional<double> configuredValue(double fromFile) const;
    void waitForFirstPower() const;

    SensorKind kind_;
    double countsPerUnit_;
    ValueRange range_;
    std::shared_ptr<const SensorFile> file_;
    std::shared_ptr<const SensorFile> fault_; ///< null without one
    std::shared_ptr<const DevicePower> power_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::shared_ptr<PowerMeter> meter_;                 ///< of an energy counter only
    std::shared_ptr<const ConfiguredValue> configured_; ///< null for a channel without configuration
};

} // namespace kelvinbar
