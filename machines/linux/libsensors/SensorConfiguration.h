#pragma once

#include "machines/linux/libsensors/ConfiguredValue.h"
#include "machines/linux/naming/SensorChannel.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kelvinbar {

/// What the configuration says of one feature of a chip ("temp1").
struct ConfiguredFeature {
    std::string label;                            ///< the user's or the driver's; without either, the feature
    std::shared_ptr<const ConfiguredValue> value; ///< null for a feature that measures nothing
};

/// The features of a chip that are not ignored.
using ConfiguredChip = std::map<std::string, ConfiguredFeature, std::less<>>;

/// Port: the user's configuration of sensors, which renames features, ignores them and corrects their values.
/// One thread at a time; the values may be read on any thread.
class SensorConfiguration {
  public:
    virtual ~SensorConfiguration() = default;

    /// Called at discovery, with all hardware monitors, before the chips are looked up. Cheap unless the
    /// configuration or the set of chips changed since the last call.
    virtual void refresh(const std::vector<SensorChip>& chips) = 0;

    /// Null for a chip that the configuration knows nothing of. Valid until the next `refresh`.
    [[nodiscard]] virtual const ConfiguredChip* find(const SensorChip& chip) const = 0;
};

} // namespace kelvinbar
