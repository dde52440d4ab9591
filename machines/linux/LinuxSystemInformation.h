#pragma once

#include "sensors/SystemInformation.h"

#include <filesystem>

namespace kelvinbar {

/// System facts from /proc and /sys. Nothing is cached: each call reads its files.
class LinuxSystemInformation final : public SystemInformation {
  public:
    /// `root` is the directory that holds proc/ and sys/.
    explicit LinuxSystemInformation(std::filesystem::path root);

    /// "machdep.cpu.brand_string" returns the processor's model name, "hw.model" the product name from the
    /// firmware.
    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override;
    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::uint64_t physicalMemory() const override;
    [[nodiscard]] std::string architecture() const override;
    /// Derived from the thermal zones' trip points; see thermalStateOfZones().
    [[nodiscard]] std::optional<int> thermalState() const override;
    [[nodiscard]] std::string_view thermalStateName() const override;
    /// Whether the firmware's platform profile is the one that saves power. Without platform profiles,
    /// whether the processor's energy preference is.
    [[nodiscard]] bool isLowPowerModeEnabled() const override;

  private:
    std::filesystem::path root_;
};

} // namespace kelvinbar
