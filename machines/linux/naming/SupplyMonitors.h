#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvinbar {

/// Whether the chip is a power supply, as opposed to the hwmon chip that the kernel creates for one.
bool isSupply(const SensorChip& chip);

/// The name of the hwmon chip that the kernel creates for a supply.
std::string monitorNameOf(const SensorChip& supply);

/// The hwmon chips that the kernel creates for power supplies. Such a chip is shown and the supply's channels
/// of the same kind are not, because other tools use the chip's keys. A search takes the same time for any
/// number of chips.
class SupplyMonitors {
  public:
    /// `chips` outlives the object.
    explicit SupplyMonitors(const std::vector<SensorChip>& chips);

    /// The supply's hwmon chip, if it has channels of that kind. Null when there is none, and for a chip that
    /// is not a supply.
    [[nodiscard]] const SensorChip* find(const SensorChip& supply, SensorKind kind) const;

  private:
    /// By name, each with the first chip that has channels of the kind.
    std::map<std::pair<std::string_view, SensorKind>, const SensorChip*> monitors_;
};

} // namespace kelvinbar
