#pragma once

#include "catalogue/Settings.h"

#include <string_view>

/// What the panel's controls do to the store, and what their tooltips say.
namespace kelvinbar {

class KelvinbarStore;

void toggleSamplingRate(KelvinbarStore& store);
void toggleDisplayMode(KelvinbarStore& store);

/// The steps of the manual height are unequal on purpose. The store keeps the height within its limits.
void decreaseHeight(KelvinbarStore& store);
void increaseHeight(KelvinbarStore& store);
void resetHeight(KelvinbarStore& store);

/// The manual height as the stepper shows it, in whole points.
long long shownHeight(const KelvinbarStore& store);

inline constexpr std::string_view samplingRateToolTip = "On: fast 1s sampling. Off: medium 3s sampling.";
std::string_view displayModeToolTip(SMCWindowDisplayMode mode);

/// `canRegister`: whether the system lets the program register itself.
std::string_view loginItemToolTip(bool canRegister);

} // namespace kelvinbar
