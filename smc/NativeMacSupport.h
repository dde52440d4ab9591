#pragma once

#include "catalogue/SMCReading.h"
#include "smc/SystemInformation.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The text of a thermal state (as in SystemInformation): "Nominal" … "Critical", or "Unknown".
std::string_view thermalStateText(int state);

/// The thermal state of that text, -1 for "Unknown"; nothing for any other text.
std::optional<int> thermalStateNamed(std::string_view text);

/// The few readings that the operating system gives by itself, for machines whose controller cannot be
/// opened. Any thread.
class NativeMacSupport {
  public:
    NativeMacSupport() = delete;

    /// Those of the readings that have a value, in fixed order, of type "native".
    static std::vector<SMCReading> readings();

    /// The text of the system-information entry `name`, trimmed; nothing when it is missing or blank.
    static std::optional<std::string> sysctlString(std::string_view name);

    /// Replaces the source. See useMachine.
    static void useSystem(std::shared_ptr<const SystemInformation> system);
};

} // namespace kelvinbar
