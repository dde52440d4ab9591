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

/// The kernel's sensors as a source: hardware monitors, power supplies and energy counters, each under a key
/// made of its chip and channel ("k10temp-pci-00c3/temp1") and with a name of its own. The files stay open
/// between passes; a pass costs one read per sensor. Devices that come and go are noticed at discovery.
///
/// Where Apple's controller is present but its keys may not be chosen, the driver's channels keep the
/// controller's own keys.
class KernelSensorSource final : public SensorSource {
  public:
    /// `root` is the directory that holds sys/; `log` outlives the source. `configuration` is the user's, for
    /// the chips below that root; null without one.
    KernelSensorSource(std::filesystem::path root, std::shared_ptr<const MonotonicClock> clock, Log& log,
                       std::shared_ptr<SensorConfiguration> configuration = nullptr);

    /// How often `status` looks for sensors on a machine that has none, such as a virtual one.
    static constexpr std::chrono::seconds searchInterval{15};

    /// Available when there is a sensor. Looks for sensors while none are known.
    SourceStatus status() override;

    /// Leaves out what a controller measures already, going by the keys it listed.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    KeyHistory keyHistory(bool withFormerKeys) override;
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    std::vector<RawReading> readSMCSuperIOFans() override { return {}; }

    void close() override;

  private:
    struct Sensor {
        RawReading prototype;            ///< everything but the value
        std::string_view controllerType; ///< the data type of a controller's key, else empty
        std::optional<LiveSensor> live;  ///< nothing for a constant
    };

    using Sensors = std::vector<Sensor>; ///< in ascending order of key
    class ListBuilder;

    /// Fills in `reading`; false when there is none.
    static bool read(const Sensor& sensor, RawReading& reading);
    static bool readController(const Sensor& sensor, const SensorSample& sample, RawReading& reading);
    void rebuild(KeySet listedBefore);
    [[nodiscard]] bool isCurrent(const KeySet& listedBefore) const;

    const std::filesystem::path root_;
    const std::shared_ptr<const MonotonicClock> clock_;
    Log& log_;

    std::mutex mutex_;                                         ///< guards what follows
    const std::shared_ptr<SensorConfiguration> configuration_; ///< may be null
    SensorFiles files_;
    std::shared_ptr<const Sensors> sensors_ = std::make_shared<const Sensors>();
    std::map<std::string, std::string> places_;       ///< of the last list, as in KeyHistory
    KeySet controllerKeys_;                           ///< of the sources before this one, when it was made
    std::optional<std::chrono::nanoseconds> builtAt_; ///< nothing before the first list and after `close`
    KeySet listedBefore_;                             ///< when the last list was made
    bool isUnlisted_ = false; ///< the sensors were found by `status` and not listed since
};

} // namespace kelvinbar
