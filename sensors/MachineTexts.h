#pragma once

#include <string_view>

namespace kelvinbar {

/// User-visible texts that name the interface a machine is read through. The defaults are for macOS, where
/// that is the SMC.
struct MachineTexts {
    std::string_view reading = "Reading AppleSMC keys…";
    std::string_view loaded = "HWMonitorSMC2-compatible keys"; ///< after "Loaded" and a number
    std::string_view nothingReadable =
        "AppleSMC connected, but no compatible sensor key returned a real value";
    std::string_view systemFactsOnly = "AppleSMC unavailable; showing native macOS telemetry";
    std::string_view scanning = "Scanning SMC sensors…";
    std::string_view memoryCard = "Memory sensors exposed by SMC"; ///< the subtitle of the memory card
};

} // namespace kelvinbar
