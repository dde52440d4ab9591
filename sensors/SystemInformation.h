#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Port: what the operating system knows of the machine without its controller. Callable from any thread.
class SystemInformation {
  public:
    virtual ~SystemInformation() = default;

    /// The bytes of the entry `name` (a sysctl name such as "hw.model") with their terminating zero; nothing
    /// when there is no such entry.
    [[nodiscard]] virtual std::optional<std::string> systemBytes(std::string_view name) const = 0;

    /// Processors that run programs now; 0 when unknown.
    [[nodiscard]] virtual int activeProcessorCount() const = 0;

    /// In bytes; 0 when unknown.
    [[nodiscard]] virtual std::uint64_t physicalMemory() const = 0;

    /// The processor's architecture, for people; empty when unknown.
    [[nodiscard]] virtual std::string architecture() const = 0;

    /// 0 nominal, 1 fair, 2 serious, 3 critical; any other number is unknown. Nothing on a system without
    /// thermal states.
    [[nodiscard]] virtual std::optional<int> thermalState() const = 0;

    /// What the thermal state is called.
    [[nodiscard]] virtual std::string_view thermalStateName() const = 0;

    [[nodiscard]] virtual bool isLowPowerModeEnabled() const = 0;
};

} // namespace kelvinbar
