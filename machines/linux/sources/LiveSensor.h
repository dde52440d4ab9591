#pragma once

#include "base/Clock.h"
#include "machines/linux/files/SensorFile.h"
#include "machines/linux/libsensors/ConfiguredValue.h"
#include "machines/linux/naming/SensorChannel.h"
#include "machines/linux/sources/SensorValue.h"
#include "sensors/SourceReport.h"

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

/// Whether a device is suspended to save power. Reading its sensors would wake it. The result is cached for
/// `validity`, so that a pass asks the kernel once per device, not once per channel. Any thread.
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

/// Derives power from an energy counter. Any thread.
class PowerMeter {
  public:
    /// The counter advances in steps. Reads that are closer together than this are not evaluated.
    static constexpr std::chrono::milliseconds shortestTime{20};

    /// `range` is the energy at which the counter wraps around, in joules; 0 if unknown.
    explicit PowerMeter(double range) : range_(range) {}

    /// How long to wait until the next read yields the first power; 0 once there is one.
    [[nodiscard]] std::chrono::nanoseconds timeToFirstPower(std::chrono::nanoseconds now) const;

    /// The mean power since the last evaluated read, in watts. Nothing at the first call, and when the
    /// counter has gone backwards other than by wrapping around. Within `shortestTime` of the last read, its
    /// result.
    std::optional<double> powerAt(double joules, std::chrono::nanoseconds now);

  private:
    static constexpr double maximumPower = 2000; ///< watts; more means that the counter was reset

    [[nodiscard]] std::optional<double> powerOf(double growth, double seconds) const;

    const double range_;
    mutable std::mutex mutex_; ///< guards the members below
    std::optional<double> joules_;
    std::chrono::nanoseconds time_{0};
    std::optional<double> power_;
};

/// The result of one read of a channel.
struct SensorSample {
    std::optional<double> number; ///< in the unit of the channel's kind
    std::string text;             ///< the value if there is no number
    std::string raw;              ///< the text in the file
    bool isAsleep = false;
    bool isSilent = false; ///< no value, because another read does not come back
};

/// A channel with its files open, for repeated reads. Copies share their files and meter. Any thread, except
/// `configure` and `meter`, which belong to construction.
class LiveSensor {
  public:
    /// `power` is null for a device that never sleeps. Values outside `range` are rejected.
    LiveSensor(const SensorChannel& channel, ValueRange range, SensorFiles& files,
               std::shared_ptr<const DevicePower> power, std::shared_ptr<const MonotonicClock> clock);

    /// Blocks while the driver reads; the first power of an energy counter takes up to 20 ms. Nothing when
    /// the file cannot be read, when the driver reports a fault, and when the value is out of range. A device
    /// that sleeps yields the text "asleep" and stays asleep.
    [[nodiscard]] std::optional<SensorSample> read() const;

    /// Likewise. `reason` is why there is no value; meaningless if there is one.
    [[nodiscard]] std::optional<SensorSample> read(LeftOutReason& reason) const;

    /// Sets the user's configuration of the channel; null has no effect. If it is not known yet whether the
    /// configuration changes the value, reads the channel once to find out. If the device sleeps, the first
    /// value after that decides. Call before `meter`.
    void configure(std::shared_ptr<const ConfiguredValue> configured);

    /// Starts the meter of an energy counter, or takes over the meter of `earlier`, the same channel in the
    /// previous list. `earlier` may be null. No effect on other channels.
    void meter(const LiveSensor* earlier);

  private:
    [[nodiscard]] bool isFaulty() const;
    [[nodiscard]] static std::optional<SensorSample> readText(std::string_view line);
    [[nodiscard]] std::optional<SensorSample> readNumber(std::string_view line, LeftOutReason& reason) const;
    [[nodiscard]] std::optional<double> fileValue() const;
    [[nodiscard]] std::optional<double> configuredValue(double fromFile) const;
    [[nodiscard]] std::optional<SensorSample> readOnce(LeftOutReason& reason) const;
    /// Returns whether there was anything to wait for.
    [[nodiscard]] bool waitForFirstPower() const;

    SensorKind kind_;
    bool isSwitchedOff_;
    double countsPerUnit_;
    ValueRange range_;
    std::shared_ptr<const SensorFile> file_;
    std::shared_ptr<const SensorFile> fault_; ///< may be null
    std::shared_ptr<const DevicePower> power_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::shared_ptr<PowerMeter> meter_;                 ///< null unless it is an energy counter
    std::shared_ptr<const ConfiguredValue> configured_; ///< may be null
};

} // namespace kelvinbar
