#pragma once

#include "machines/replay/RecordedMachine.h"
#include "sensors/SystemInformation.h"

namespace kelvinbar {

/// The system facts of a recorded machine. Immutable. Facts that were not recorded are reported as unknown,
/// in the way SystemInformation defines for each.
class ReplaySystemInformation final : public SystemInformation {
  public:
    explicit ReplaySystemInformation(RecordedFacts facts);

    /// Only the processor's model is recorded ("machdep.cpu.brand_string").
    [[nodiscard]] std::optional<std::string> systemBytes(std::string_view name) const override;
    [[nodiscard]] int activeProcessorCount() const override;
    [[nodiscard]] std::uint64_t physicalMemory() const override;
    [[nodiscard]] std::string architecture() const override;
    [[nodiscard]] std::optional<int> thermalState() const override;
    [[nodiscard]] std::string_view thermalStateName() const override;
    [[nodiscard]] bool isLowPowerModeEnabled() const override;

  private:
    RecordedFacts facts_;
};

} // namespace kelvinbar
