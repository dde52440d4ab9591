#include "panel/PanelActions.h"

#include "store/KelvinbarStore.h"
#include "store/Preferences.h"

#include <algorithm>

namespace kelvinbar {

namespace {

constexpr double heightDecrease = 80;
constexpr double heightIncrease = 96;

/// A preference file may contain any number; no screen is this high.
constexpr double greatestShownHeight = 999'999;

} // namespace

void toggleSamplingRate(KelvinbarStore& store) {
    const bool isFast = store.samplingRate().value() == SMCSamplingRate::fast;
    store.setSamplingRate(isFast ? SMCSamplingRate::medium : SMCSamplingRate::fast);
}

void toggleDisplayMode(KelvinbarStore& store) {
    const bool isDynamic = store.displayMode().value() == SMCWindowDisplayMode::dynamic;
    store.setDisplayMode(isDynamic ? SMCWindowDisplayMode::fixed : SMCWindowDisplayMode::dynamic);
}

void decreaseHeight(KelvinbarStore& store) {
    store.setManualPopoverHeight(store.manualPopoverHeight().value() - heightDecrease);
}

void increaseHeight(KelvinbarStore& store) {
    store.setManualPopoverHeight(store.manualPopoverHeight().value() + heightIncrease);
}

void resetHeight(KelvinbarStore& store) { store.setManualPopoverHeight(standardPopoverSize.height); }

bool isLowestHeight(const KelvinbarStore& store) {
    return store.manualPopoverHeight().value() <= minimumPopoverHeight;
}

bool isGreatestHeight(const KelvinbarStore& store) {
    return store.manualPopoverHeight().value() >= maximumPopoverHeight;
}

long long shownHeight(const KelvinbarStore& store) {
    return static_cast<long long>(std::min(store.manualPopoverHeight().value(), greatestShownHeight));
}

std::string_view displayModeToolTip(SMCWindowDisplayMode mode) {
    return mode == SMCWindowDisplayMode::dynamic ? "Expands only the window height to show more keys, "
                                                   "limited by the current screen visible area."
                                                 : "Keeps the window at the compact standard size.";
}

std::string_view loginItemToolTip(const MachineTexts& texts, bool canRegister) {
    return canRegister
               ? texts.loginItem
               : "Open Login Items in System Settings; automatic registration requires macOS 13 or newer.";
}

} // namespace kelvinbar
