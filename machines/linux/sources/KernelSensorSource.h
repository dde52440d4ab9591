#pragma once

#include "base/Clock.h"
#include "base/Log.h"
#include "machines/linux/files/SensorFile.h"
#include "machines/linux/libsensors/SensorConfiguration.h"
#include "machines/linux/sources/LiveSensor.h"
#include "sensors/SensorSource.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The sensors that the Linux kernel publishes: hardware monitors, power supplies and energy counters. Keys
/// consist of chip and channel ("k10temp-pci-00c3/temp1"); readings carry their own name, category and unit.
///
/// Discovery looks for chips, names them and opens their files. A pass reads each file once, in place, so it
/// costs one system call per sensor. Devices that come and go are noticed at the next discovery.
///
/// Limits and pitfalls:
/// - A driver may block for seconds. Passes read values without a lock, so such a chip delays only the pass
///   that reads it; but discovery reads energy counters and configured values under the lock.
/// - Sleeping devices are not read, because reading wakes them. Their value is the text "asleep".
/// - The power of an energy counter needs two reads, 20 ms or more apart. The first is made at discovery.
/// - On an Apple computer whose SMC keys may not be listed, the `applesmc` channels appear under the SMC's
///   keys.
///
/// Any thread.
class KernelSensorSource final : public SensorSource {
  public:
    /// `root` is the directory that holds sys/. `configuration` is the user's, and applies to the chips below
    /// that root; may be null. `log` outlives the source.
    KernelSensorSource(std::filesystem::path root, std::shared_ptr<const MonotonicClock> clock, Log& log,
                       std::shared_ptr<SensorConfiguration> configuration = nullptr);

    /// The shortest time between two searches by `status` while there are no sensors, as on a virtual
    /// machine.
    static constexpr std::chrono::seconds searchInterval{15};

    /// Available when there is at least one sensor. Looks for sensors if the last search found none.
    SourceStatus status() override;

    /// Looks for sensors, unless `status` did within the last second. Leaves out channels that the SMC keys
    /// in `listedBefore` already measure.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    /// Former keys depend on the driver's labels, so the chips are read again without the configuration.
    KeyHistory keyHistory(bool withFormerKeys) override;
    /// Fastest with keys in ascending order, as `discoverKeys` returns them.
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    std::vector<RawReading> readSMCSuperIOFans() override { return {}; }

    /// Closes the files, once passes that still use them have ended.
    void close() override;

  private:
    struct Sensor {
        RawReading prototype;            ///< the reading without its value
        std::string_view controllerType; ///< the data type of an SMC key, else empty
        std::optional<LiveSensor> live;  ///< empty for a constant
    };

    using Sensors = std::vector<Sensor>; ///< in ascending order of key
    class ListBuilder;

    /// Stores a reading in `reading`; false when the sensor cannot be read.
    static bool read(const Sensor& sensor, RawReading& reading);
    static bool readController(const Sensor& sensor, const SensorSample& sample, RawReading& reading);
    void rebuild(KeySet listedBefore);
    [[nodiscard]] bool isCurrent(const KeySet& listedBefore) const;

    const std::filesystem::path root_;
    const std::shared_ptr<const MonotonicClock> clock_;
    Log& log_;

    std::mutex mutex_;                                         ///< guards the members below
    const std::shared_ptr<SensorConfiguration> configuration_; ///< may be null
    SensorFiles files_;
    std::shared_ptr<const Sensors> sensors_ = std::make_shared<const Sensors>();
    std::map<std::string, std::string> places_;       ///< as in KeyHistory, of the last search
    KeySet controllerKeys_;                           ///< SMC keys at the last search
    std::optional<std::chrono::nanoseconds> builtAt_; ///< empty before the first search and after `close`
    KeySet listedBefore_;                             ///< the argument of the last search
    bool isUnlisted_ = false;                         ///< found by `status`, not listed yet
};

} // namespace kelvinbar
