#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/Settings.h"
#include "store/UserDefaults.h"

#include <string>
#include <vector>

/// The stored form of every preference: keys, types and fallbacks.
namespace kelvinbar {

/// In points.
struct PopoverSize {
    double width = 0;
    double height = 0;
};

/// The panel's size until the user chooses another height. Its width is fixed.
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

/// What is stored, with the defaults above for what is missing or unusable. Writes nothing.
Preferences loadPreferences(const UserDefaults& defaults);

void storeSamplingRate(UserDefaults& defaults, SMCSamplingRate rate);
void storeDisplayMode(UserDefaults& defaults, SMCWindowDisplayMode mode);
void storeManualPopoverSize(UserDefaults& defaults, const PopoverSize& size);

/// Also stores the first key by itself, for older versions that knew one pinned key. Empty removes both.
void storeMenuBarKeys(UserDefaults& defaults, const std::vector<std::string>& keys);

/// Stores the keys in ascending order. Empty removes the entry.
void storeHiddenKeys(UserDefaults& defaults, const KeySet& keys);

/// The distinct, non-blank elements of `keys`, trimmed.
KeySet sanitizedHiddenKeys(const std::vector<std::string>& keys);

} // namespace kelvinbar
