#pragma once

#include "machines/linux/libsensors/ConfiguredValue.h"
#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The configuration's name as a device of the watch. Calls of SensorConfiguration belong in a visit of it.
inline constexpr std::string_view configurationName = "libsensors";

/// The configuration of one feature of a chip ("temp1").
struct ConfiguredFeature {
    std::string label;                            ///< the user's, else the driver's, else the feature's name
    std::shared_ptr<const ConfiguredValue> value; ///< null for a feature without a value
};

/// By name, the features of a chip that are not ignored.
using ConfiguredChip = std::map<std::string, ConfiguredFeature, std::less<>>;

/// Port: the user's sensor configuration, which renames features, ignores them and corrects their values.
/// Calls must not overlap; the values may be read on any thread, also after the configuration has been
/// refreshed.
class SensorConfiguration {
  public:
    virtual ~SensorConfiguration() = default;

    /// Called at discovery with all hardware monitors, before any `find`. Cheap unless the configuration or
    /// the set of chips has changed since the last call.
    virtual void refresh(const std::vector<SensorChip>& chips) = 0;

    /// The configuration of a chip; null for a chip that it does not know. Valid until the next `refresh`.
    [[nodiscard]] virtual const ConfiguredChip* find(const SensorChip& chip) const = 0;

    /// Whether it is used, from which files, and what is wrong in them. Without a description before the
    /// first `refresh`.
    [[nodiscard]] virtual ConfigurationReport report() const = 0;
};

} // namespace kelvinbar
