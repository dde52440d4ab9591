#include "store/Preferences.h"

#include "base/Text.h"
#include "store/MenuBarText.h"

namespace kelvinbar {

namespace {

constexpr std::string_view samplingRateKey = "KelvinbarSamplingRate";
constexpr std::string_view displayModeKey = "KelvinbarWindowDisplayMode";
constexpr std::string_view manualPopoverWidthKey = "KelvinbarManualPopoverWidth";
constexpr std::string_view manualPopoverHeightKey = "KelvinbarManualPopoverHeight";
constexpr std::string_view menuBarKeysKey = "KelvinbarMenuBarKeys";
constexpr std::string_view menuBarKeyKey = "KelvinbarMenuBarKey";
constexpr std::string_view hiddenKeysKey = "KelvinbarHiddenKeys";

double positiveNumberOr(const UserDefaults& defaults, std::string_view key, double fallback) {
    const double stored = defaults.number(key);
    return stored > 0 ? stored : fallback;
}

std::vector<std::string> loadMenuBarKeys(const UserDefaults& defaults) {
    if (const auto keys = defaults.textList(menuBarKeysKey)) return sanitizedPinnedKeys(*keys);
    return sanitizedPinnedKeys({defaults.text(menuBarKeyKey).value_or("")});
}

} // namespace

Preferences loadPreferences(const UserDefaults& defaults) {
    Preferences preferences;
    const auto rate = samplingRateFromRawValue(defaults.text(samplingRateKey).value_or(""));
    preferences.samplingRate = rate.value_or(preferences.samplingRate);
    const auto mode = windowDisplayModeFromRawValue(defaults.text(displayModeKey).value_or(""));
    preferences.displayMode = mode.value_or(preferences.displayMode);
    PopoverSize& size = preferences.manualPopoverSize;
    size.width = positiveNumberOr(defaults, manualPopoverWidthKey, size.width);
    size.height = positiveNumberOr(defaults, manualPopoverHeightKey, size.height);
    preferences.menuBarKeys = loadMenuBarKeys(defaults);
    preferences.hiddenKeys = sanitizedHiddenKeys(defaults.textList(hiddenKeysKey).value_or(TextList{}));
    return preferences;
}

void storeSamplingRate(UserDefaults& defaults, SMCSamplingRate rate) {
    defaults.setText(samplingRateKey, std::string(rawValue(rate)));
}

void storeDisplayMode(UserDefaults& defaults, SMCWindowDisplayMode mode) {
    defaults.setText(displayModeKey, std::string(rawValue(mode)));
}

void storeManualPopoverSize(UserDefaults& defaults, const PopoverSize& size) {
    defaults.setNumber(manualPopoverWidthKey, size.width);
    defaults.setNumber(manualPopoverHeightKey, size.height);
}

void storeMenuBarKeys(UserDefaults& defaults, const std::vector<std::string>& keys) {
    if (keys.empty()) {
        defaults.remove(menuBarKeysKey);
        defaults.remove(menuBarKeyKey);
        return;
    }
    defaults.setTextList(menuBarKeysKey, keys);
    defaults.setText(menuBarKeyKey, keys.front());
}

void storeHiddenKeys(UserDefaults& defaults, const KeySet& keys) {
    if (keys.empty()) {
        defaults.remove(hiddenKeysKey);
    } else {
        defaults.setTextList(hiddenKeysKey, TextList(keys.begin(), keys.end()));
    }
}

KeySet sanitizedHiddenKeys(const std::vector<std::string>& keys) {
    KeySet clean;
    for (const std::string& key : keys) {
        const std::string_view text = trimmed(key);
        if (!text.empty()) clean.emplace(text);
    }
    return clean;
}

} // namespace kelvinbar
