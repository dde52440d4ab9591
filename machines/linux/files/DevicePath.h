#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The entries of sys/class/`className` below `root`, in natural order of their names.
std::vector<std::filesystem::path> classEntries(const std::filesystem::path& root,
                                                std::string_view className);

/// Where the device of a class entry sits: its path below sys/devices without the parts that the kernel
/// numbers as it finds them (hwmon3, nvme0, phy1, thermal_zone2). The same after every boot, for as long as
/// the device stays in its place. Empty when the entry tells nothing of its device.
std::string devicePath(const std::filesystem::path& root, const std::filesystem::path& entry);

} // namespace kelvinbar
