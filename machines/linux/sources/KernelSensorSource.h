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
/// - A driver may block for ever. Each chip is a device of the watch (ReadWatch.h). While it is set aside,
/// its
///   readings say "no answer". Discovery keeps the sensors of such a chip, but cannot find new ones.
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

    /// Batteries and chargers, energy counters, and hardware monitors, in this order.
    std::vector<SourceReport> report() override;

    /// Closes the files, once passes that still use them have ended.
    void close() override;

  private:
    struct Sensor {
        std::string device;              ///< its chip's name for the watch
        RawReading prototype;            ///< the reading without its value
        std::string_view controllerType; ///< the data type of an SMC key, else empty
        std::optional<LiveSensor> live;  ///< empty for a constant
    };

    /// By channel of a chip, how the configuration computes its value; may be null.
    using ConfiguredChannels = std::vector<std::shared_ptr<const ConfiguredValue>>;
    using Sensors = std::vector<Sensor>; ///< in ascending order of key
    class ListBuilder;

    /// The result of a search.
    struct Listing {
        std::shared_ptr<const Sensors> sensors = std::make_shared<const Sensors>();
        std::map<std::string, std::string> places;       ///< as in KeyHistory
        KeySet controllerKeys;                           ///< the SMC keys at the time
        KeySet listedBefore;                             ///< the argument of the search
        std::optional<std::chrono::nanoseconds> builtAt; ///< empty before the first search and after `close`
        bool isUnlisted = false;                         ///< found by `status`, not listed yet
    };

    /// Stores a reading in `reading`; false when the sensor cannot be read. Reads nothing unless `isAllowed`.
    static bool read(const Sensor& sensor, bool isAllowed, RawReading& reading);
    static std::optional<LeftOutReason> reasonAgainst(const Sensor& sensor, bool isAllowed);
    static bool readController(const Sensor& sensor, const SensorSample& sample, RawReading& reading);
    static bool isCurrent(const Listing& listing, const KeySet& listedBefore, std::chrono::nanoseconds now);

    [[nodiscard]] Listing listing() const;
    void searchIfDue();
    void search(const KeySet& listedBefore, bool isUnlisted);
    /// What is there now. Adds what has no sensor to `leftOut`, which may be null.
    [[nodiscard]] Listing currentListing(const KeySet& listedBefore, LeftOutChannels* leftOut);
    [[nodiscard]] std::vector<ConfiguredChannels>
    configuredChannels(const std::vector<SensorChip>& chips) const;

    const std::filesystem::path root_;
    const std::shared_ptr<const MonotonicClock> clock_;
    Log& log_;

    const std::shared_ptr<SensorConfiguration> configuration_; ///< may be null
    SensorFiles files_;
    mutable std::mutex mutex_; ///< guards `listing_`; not held while files are read
    Listing listing_;
};

} // namespace kelvinbar
