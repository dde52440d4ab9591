#pragma once

#include "sensors/SystemInformation.h"

namespace kelvinbar {

/// System facts of the kernel and of the process's own information object.
class MacSystemInformation final : public SystemInformation {
  public:
    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override;
    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::uint64_t physicalMemory() const override;
    [[nodiscard]] std::string architecture() const override;
    [[nodiscard]] std::optional<int> thermalState() const override;
    [[nodiscard]] std::string_view thermalStateName() const override;
    /// Always false before macOS 12, which has no such mode.
    [[nodiscard]] bool isLowPowerModeEnabled() const override;
};

} // namespace kelvinbar
