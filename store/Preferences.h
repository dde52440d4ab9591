#pragma once

#include "catalogue/Settings.h"
#include "store/LoadPass.h"
#include "store/UserDefaults.h"

#include <string>
#include <vector>

/// The stored form of every preference: keys, types and fallbacks.
namespace kelvinbar {

struct PopoverSize {
    double width = 462;  ///< points
    double height = 690; ///< points
};

struct Preferences {
    SMCSamplingRate samplingRate = SMCSamplingRate::medium;
    SMCWindowDisplayMode displayMode = SMCWindowDisplayMode::fixed;
    PopoverSize manualPopoverSize;
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
