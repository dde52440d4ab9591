#pragma once

#include "catalogue/SMCReading.h"
#include "sensors/SystemInformation.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The text of a thermal state (see SystemInformation::thermalState): "Nominal" to "Critical", or "Unknown".
std::string_view thermalStateText(int state);

/// The inverse of `thermalStateText`, with -1 for "Unknown". No value for any other text.
std::optional<int> thermalStateNamed(std::string_view text);

/// The readings shown on a machine whose sensors cannot be read: facts that the operating system reports
/// without a controller. Any thread.
class NativeMacSupport {
  public:
    /// `system` must outlive the object.
    explicit NativeMacSupport(const SystemInformation& system) : system_(system) {}

    /// The facts that have a value, in a fixed order. Their type is `nativeType`.
    [[nodiscard]] std::vector<SMCReading> readings() const;

    /// The trimmed text of the sysctl entry `name`. No value if it is missing, empty after trimming or not
    /// valid UTF-8.
    [[nodiscard]] std::optional<std::string> sysctlString(std::string_view name) const;

  private:
    [[nodiscard]] std::optional<SMCReading> cpuModel() const;

    const SystemInformation& system_;
};

} // namespace kelvinbar
