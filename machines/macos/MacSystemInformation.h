#pragma once

#include "sensors/SystemInformation.h"

namespace kelvinbar {

/// System facts from sysctl and NSProcessInfo. Nothing is cached.
class MacSystemInformation final : public SystemInformation {
  public:
    /// `name` is passed to sysctl unchanged.
    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override;
    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::uint64_t physicalMemory() const override;
    [[nodiscard]] std::string architecture() const override;
    /// NSProcessInfoThermalState as a number.
    [[nodiscard]] std::optional<int> thermalState() const override;
    [[nodiscard]] std::string_view thermalStateName() const override;
    /// Always false before macOS 12, which introduced the mode on the Mac.
    [[nodiscard]] bool isLowPowerModeEnabled() const override;
};

} // namespace kelvinbar
