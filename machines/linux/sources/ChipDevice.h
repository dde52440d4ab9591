#pragma once

#include "machines/linux/naming/ChipName.h"

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What the kernel publishes about the device behind a monitoring chip. Reads directories and attributes of
/// sysfs; a device that sleeps is not woken. Any thread.
namespace kelvinbar {

using FileNames = std::set<std::string, std::less<>>;

/// The names in a folder; none if it cannot be read.
FileNames fileNames(const std::filesystem::path& folder);

/// The device of a chip. Its folder is listed once, because most of what is looked for there is missing.
class ChipDevice {
  public:
    /// A chip without a device.
    ChipDevice() = default;

    /// `link` is the `device` link in the chip's entry.
    explicit ChipDevice(std::filesystem::path link);

    [[nodiscard]] const std::filesystem::path& link() const { return link_; }

    /// Where the link leads, without links; empty if it leads nowhere.
    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    [[nodiscard]] const FileNames& names() const { return names_; }

    /// False if a file of that name is missing. True for any name if the folder could not be listed, so that
    /// the file itself has to tell.
    [[nodiscard]] bool mayHave(std::string_view name) const {
        return !link_.empty() && (names_.empty() || names_.contains(name));
    }

  private:
    std::filesystem::path link_;
    std::filesystem::path folder_;
    FileNames names_;
};

/// The files with the power state of a chip's devices, and whether one of them sleeps.
struct ChipPower {
    std::vector<std::filesystem::path> states;
    bool isAsleep = false;
};

ChipPower chipPower(const ChipDevice& device);

/// The devices behind a chip, following the `device` links.
std::vector<DeviceStep> deviceSteps(const ChipDevice& device);

/// The model of a drive; empty for other devices.
std::string driveModel(const ChipDevice& device);

/// The network interfaces of devices. Every folder is looked into once, however many chips are below it.
class NetworkInterfaces {
  public:
    /// `devices` is the folder of all devices, without links.
    explicit NetworkInterfaces(std::filesystem::path devices) : devices_(std::move(devices)) {}

    /// The interface of the chip's device, or of a device up to a few folders above (the chip may be in a
    /// radio or in a transceiver on the card's own bus). Empty if there is none; a bridge has none.
    const std::string& of(const ChipDevice& device);

  private:
    const std::string& in(std::string_view folder);

    const std::filesystem::path devices_;
    const std::string none_;
    std::map<std::string, std::string, std::less<>> interfaces_; ///< by folder
};

} // namespace kelvinbar
