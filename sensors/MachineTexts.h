#pragma once

#include <string_view>

namespace kelvinbar {

/// User-visible texts that name the interface a machine is read through, and the places of its desktop. The
/// defaults are for macOS: the SMC, the menu bar and login items.
struct MachineTexts {
    std::string_view reading = "Reading AppleSMC keys…";
    std::string_view loaded = "HWMonitorSMC2-compatible keys"; ///< after "Loaded" and a number
    std::string_view nothingReadable =
        "AppleSMC connected, but no compatible sensor key returned a real value";
    std::string_view systemFactsOnly = "AppleSMC unavailable; showing native macOS telemetry";
    std::string_view scanning = "Scanning SMC sensors…";
    std::string_view memoryCard = "Memory sensors exposed by SMC"; ///< the subtitle of the memory card
    std::string_view pinToolTip = "Double-click to add this key to the macOS menu bar"; ///< of a row
    std::string_view unpinToolTip = "Double-click to remove this key from the menu bar";
    std::string_view pinned = "Showing this key in the menu bar";
    std::string_view pin = "Show in menu bar"; ///< in the menu of a row
    std::string_view unpin = "Remove from menu bar";
    std::string_view loginItem = "Enable or disable Kelvinbar as a macOS login item.";
    std::string_view about =
        "Menu bar sensor reader for Hackintosh, AMD SMCAMDProcessor, Intel Macs and Apple Silicon Macs.";
};

} // namespace kelvinbar
