#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/Settings.h"
#include "store/UserDefaults.h"

#include <string>
#include <vector>

/// How each preference is stored: its key, its type, and the default for a missing or invalid value. Main
/// thread.
namespace kelvinbar {

/// In points.
struct PopoverSize {
    double width = 0;
    double height = 0;
};

/// The panel's size until the user chooses another height. The width is fixed.
inline constexpr PopoverSize standardPopoverSize{462, 690};

/// The range of the panel's height, in points.
inline constexpr double minimumPopoverHeight = 560;
inline constexpr double maximumPopoverHeight = 1400;

struct Preferences {
    SMCSamplingRate samplingRate = SMCSamplingRate::medium;
    SMCWindowDisplayMode displayMode = SMCWindowDisplayMode::fixed;
    PopoverSize manualPopoverSize = standardPopoverSize;
    std::vector<std::string> menuBarKeys; ///< in pin order
    KeySet hiddenKeys;
};

/// The stored preferences, with the defaults above for missing and invalid values. Stores nothing.
Preferences loadPreferences(const UserDefaults& defaults);

void storeSamplingRate(UserDefaults& defaults, SMCSamplingRate rate);
void storeDisplayMode(UserDefaults& defaults, SMCWindowDisplayMode mode);
void storeManualPopoverSize(UserDefaults& defaults, const PopoverSize& size);

/// Also stores the first key alone, for versions that had a single pin. Without keys, removes both entries.
void storeMenuBarKeys(UserDefaults& defaults, const std::vector<std::string>& keys);

/// Stores the keys in ascending order. Without keys, removes the entry.
void storeHiddenKeys(UserDefaults& defaults, const KeySet& keys);

/// `keys` trimmed, without empty texts and duplicates.
KeySet sanitizedHiddenKeys(const std::vector<std::string>& keys);

} // namespace kelvinbar
