#pragma once

#include "machines/linux/naming/SensorChannel.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// Names of the chips that power supplies make: "battery:BAT0", "charger:AC", "peripheral:hidpp_battery_0".
inline constexpr std::string_view batteryChipPrefix = "battery:";
inline constexpr std::string_view peripheralChipPrefix = "peripheral:";
inline constexpr std::string_view chargerChipPrefix = "charger:";

/// The batteries and chargers of the kernel's power-supply class, each as a chip whose channels are labelled
/// with the attribute they come from ("voltage_now"). Batteries of the machine come before those of devices
/// that are connected to it. `root` is the directory that holds sys/.
std::vector<SensorChip> powerSupplyChips(const std::filesystem::path& root);

} // namespace kelvinbar
