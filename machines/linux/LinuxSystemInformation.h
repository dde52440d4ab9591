#pragma once

#include "sensors/SystemInformation.h"

#include <filesystem>

namespace kelvinbar {

/// System facts from /proc and /sys, read afresh at every call.
class LinuxSystemInformation final : public SystemInformation {
  public:
    /// `root` is the directory that holds proc/ and sys/.
    explicit LinuxSystemInformation(std::filesystem::path root);

    /// "machdep.cpu.brand_string" is the processor's model name, "hw.model" the product name.
    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override;
    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::uint64_t physicalMemory() const override;
    [[nodiscard]] std::string architecture() const override;
    [[nodiscard]] std::optional<int> thermalState() const override;
    [[nodiscard]] std::string_view thermalStateName() const override;
    /// Whether the firmware's platform profile, or without one the processor's energy preference, is the one
    /// that saves power.
    [[nodiscard]] bool isLowPowerModeEnabled() const override;

  private:
    std::filesystem::path root_;
};

} // namespace kelvinbar
