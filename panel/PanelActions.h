#pragma once

#include "catalogue/Settings.h"
#include "sensors/MachineTexts.h"

#include <string_view>

/// What the panel's controls do to the store, and the texts of their tooltips. Plain functions without Qt;
/// main thread, like the store.
namespace kelvinbar {

class KelvinbarStore;

/// Between fast and medium.
void toggleSamplingRate(KelvinbarStore& store);
/// Between dynamic and fixed.
void toggleDisplayMode(KelvinbarStore& store);

/// The steps down (80 points) and up (96 points) differ on purpose. The store clamps the height.
void decreaseHeight(KelvinbarStore& store);
void increaseHeight(KelvinbarStore& store);
void resetHeight(KelvinbarStore& store);

/// Whether a step down or up has no effect.
bool isLowestHeight(const KelvinbarStore& store);
bool isGreatestHeight(const KelvinbarStore& store);

/// The manual height for the stepper, in whole points. Limited to six digits, since a preference file may
/// contain any number.
long long shownHeight(const KelvinbarStore& store);

inline constexpr std::string_view samplingRateToolTip = "On: fast 1s sampling. Off: medium 3s sampling.";
std::string_view displayModeToolTip(SMCWindowDisplayMode mode);

/// `canRegister`: whether the system allows the program to register itself as a login item.
std::string_view loginItemToolTip(const MachineTexts& texts, bool canRegister);

} // namespace kelvinbar
