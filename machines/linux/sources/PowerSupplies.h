#pragma once

#include "machines/linux/naming/SensorChannel.h"
#include "sensors/SourceReport.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Prefixes of chip names for supplies: "battery:BAT0", "charger:AC", "peripheral:hidpp_battery_0".
inline constexpr std::string_view batteryChipPrefix = "battery:";
inline constexpr std::string_view peripheralChipPrefix = "peripheral:";
inline constexpr std::string_view chargerChipPrefix = "charger:";

/// The batteries and chargers of the kernel's power-supply class. Each is a chip whose channels have the
/// attribute as label ("voltage_now"). Batteries of the machine precede those of peripherals. Batteries that
/// count energy are converted to charge. `root` is the directory that holds sys/.
///
/// A supply that is not present is added to `leftOut`, which may be null.
std::vector<SensorChip> powerSupplyChips(const std::filesystem::path& root,
                                         LeftOutChannels* leftOut = nullptr);

} // namespace kelvinbar
