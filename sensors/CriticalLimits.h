#pragma once

#include "sensors/ReadWatch.h"

#include <optional>
#include <span>
#include <string>

namespace kelvinbar {

/// How far a sensor is from the temperature at which its device is in danger.
struct CriticalMargin {
    std::string sensor; ///< for people: "k10temp-pci-00c3/temp1"
    double degrees = 0; ///< below the limit, in °C; negative above it
};

/// Port: the critical temperatures of a machine. One thread at a time.
class CriticalLimits {
  public:
    virtual ~CriticalLimits() = default;

    /// The sensor that is nearest to its limit now; no value if no sensor has a limit that can be read.
    /// Devices that sleep are not woken, and those of `silent` not read. Blocks while drivers read.
    [[nodiscard]] virtual std::optional<CriticalMargin>
    smallestMargin(std::span<const SilentDevice> silent) = 0;
};

} // namespace kelvinbar
