#pragma once

#include "catalogue/SMCReading.h"
#include "sensors/SystemInformation.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The text of a thermal state as in SystemInformation: "Nominal" to "Critical", or "Unknown".
std::string_view thermalStateText(int state);

/// The thermal state that `text` names, -1 for "Unknown"; nothing for any other text.
std::optional<int> thermalStateNamed(std::string_view text);

/// The readings that the operating system offers by itself, for machines without a readable source. Any
/// thread.
class NativeMacSupport {
  public:
    /// `system` outlives the object.
    explicit NativeMacSupport(const SystemInformation& system) : system_(system) {}

    /// The readings that have a value, in fixed order, of type "native".
    [[nodiscard]] std::vector<SMCReading> readings() const;

    /// The text of the system-information entry `name`, trimmed. Nothing when it is missing, blank or not
    /// well-formed UTF-8.
    [[nodiscard]] std::optional<std::string> sysctlString(std::string_view name) const;

  private:
    [[nodiscard]] std::optional<SMCReading> cpuModel() const;

    const SystemInformation& system_;
};

} // namespace kelvinbar
