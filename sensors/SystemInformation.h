#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Port: facts about the machine that the operating system reports without a controller. Any thread.
class SystemInformation {
  public:
    virtual ~SystemInformation() = default;

    /// The bytes of the sysctl entry `name`, such as "hw.model", with their terminating zero. No value if
    /// there is no such entry.
    [[nodiscard]] virtual std::optional<std::string> systemBytes(std::string_view name) const = 0;

    /// Number of logical processors that are online; 0 if unknown.
    [[nodiscard]] virtual int activeProcessorCount() const = 0;

    /// In bytes; 0 if unknown.
    [[nodiscard]] virtual std::uint64_t physicalMemory() const = 0;

    /// The processor's architecture as display text; empty if unknown.
    [[nodiscard]] virtual std::string architecture() const = 0;

    /// 0 nominal, 1 fair, 2 serious, 3 critical, any other number unknown. No value on systems without
    /// thermal states.
    [[nodiscard]] virtual std::optional<int> thermalState() const = 0;

    /// The name of the reading that shows the thermal state.
    [[nodiscard]] virtual std::string_view thermalStateName() const = 0;

    [[nodiscard]] virtual bool isLowPowerModeEnabled() const = 0;
};

} // namespace kelvinbar
