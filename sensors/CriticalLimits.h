#pragma once

#include <optional>
#include <string>

namespace kelvinbar {

/// How far a sensor is from the temperature at which its device is in danger.
struct CriticalMargin {
    std::string sensor; ///< for people: "k10temp-pci-00c3/temp1"
    double degrees = 0; ///< below the limit, in °C; negative above it
};

/// Port: the critical temperatures of a machine. Any thread.
class CriticalLimits {
  public:
    virtual ~CriticalLimits() = default;

    /// The sensor that is nearest to its limit now; no value if no sensor has a limit that can be read.
    /// Devices that sleep are not woken. Blocks while drivers read: ask in a pass of the machine's watch,
    /// which leaves out devices that do not answer.
    [[nodiscard]] virtual std::optional<CriticalMargin> smallestMargin() = 0;
};

} // namespace kelvinbar
