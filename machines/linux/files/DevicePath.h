#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The entries of sys/class/`className` below `root`, in natural order of their names (hwmon2 before
/// hwmon10). Empty when the class does not exist.
std::vector<std::filesystem::path> classEntries(const std::filesystem::path& root,
                                                std::string_view className);

/// Likewise, with the class's folder as a device of the watch. Empty while that is set aside.
std::vector<std::filesystem::path> visitedClassEntries(const std::filesystem::path& root,
                                                       std::string_view className);

/// The folder sys/devices, looked up once for all entries of a class.
class DeviceTree {
  public:
    /// Not during a visit of a device.
    explicit DeviceTree(std::filesystem::path root);

    /// Without links; empty if there is none or it does not answer.
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    /// The path of a class entry's device below the folder, without the components that the kernel numbers in
    /// order of discovery (hwmon3, nvme0, phy1, thermal_zone2). It stays the same across boots as long as the
    /// device stays in its slot. Falls back to the link's target and to the device's uevent text, for trees
    /// that lack sys/devices. Empty when the entry has no device. `device` is where the entry's `device` link
    /// leads, without links, or empty.
    [[nodiscard]] std::string pathOf(const std::filesystem::path& entry,
                                     const std::filesystem::path& device) const;

  private:
    std::filesystem::path root_;
    std::filesystem::path folder_;
};

} // namespace kelvinbar
