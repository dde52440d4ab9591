#include "machines/linux/applesmc/ControllerCoverage.h"

#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelvinbar {

namespace {

using enum SensorKind;

struct CoverageRow {
    std::string_view chips; ///< pattern
    SensorKind kind;
    std::string_view labels; ///< pattern
    std::string_view keys;   ///< alternatives; "?" is any character; case-sensitive
};

constexpr std::array rows{
    CoverageRow{"coretemp", temperature, "Core *", "TC?C"},
    CoverageRow{"rapl", energy, "package-0", "PCPR|PC0R|PC0C"},
    CoverageRow{"rapl", energy, "package-*", "PC1R"},
    CoverageRow{"rapl", energy, "core", "PCPC"},
    CoverageRow{"rapl", energy, "uncore", "PCPG"},
    CoverageRow{"iwlwifi*|ath?0k*|ath1?k*|mt7*|rtw*|rtl8*|brcm*", temperature, "*", "TW0P"},
    CoverageRow{"pch_*", temperature, "*", "TPCD"},
    CoverageRow{"battery:*|BAT?|CMB?", voltage, "*", "B?AV"},
    CoverageRow{"battery:*|BAT?|CMB?", current, "*", "B?AC|B?Am"},
    CoverageRow{"battery:*|BAT?|CMB?", power, "*", "B?AP"},
    CoverageRow{"battery:*|BAT?|CMB?", temperature, "*", "TB0T"},
    CoverageRow{"battery:*", charge, "charge_now|energy_now", "B?RM"},
    CoverageRow{"battery:*", charge, "charge_full|energy_full", "B?FC"},
    CoverageRow{"battery:*", charge, "charge_full_design|energy_full_design", "B?DC"},
    CoverageRow{"battery:*", count, "cycle_count", "B?CT"},
    CoverageRow{"battery:*", percent, "*", "BRSC"},
    CoverageRow{"battery:*", duration, "time_to_full_now", "B?TF"},
    CoverageRow{"battery:*", duration, "time_to_empty_now", "B?TE"},
    CoverageRow{"battery:*", text, "status", "B?St"},
    CoverageRow{"charger:*", flag, "online", "CH0B"},
    CoverageRow{"charger:*", voltage, "*", "CH0V"},
    CoverageRow{"charger:*", current, "*", "CH0C"},
    CoverageRow{"charger:*", power, "*", "CH0W|ACPW"},
};

bool fitsKey(std::string_view alternative, std::string_view key) {
    return std::ranges::equal(alternative, key,
                              [](char left, char right) { return left == '?' || left == right; });
}

bool hasKeyLike(const KeySet& keys, std::string_view pattern) {
    return fitsAnyAlternative(pattern, [&](std::string_view alternative) {
        return std::ranges::any_of(keys, [&](const auto& key) { return fitsKey(alternative, key); });
    });
}

} // namespace

bool isMeasuredByController(const SensorChip& chip, const SensorChannel& channel,
                            const KeySet& controllerKeys) {
    if (controllerKeys.empty()) return false;
    const auto* const row = std::ranges::find_if(rows, [&](const CoverageRow& each) {
        return each.kind == channel.kind && fitsPattern(each.chips, chip.name) &&
               fitsPattern(each.labels, channel.label);
    });
    return row != rows.end() && hasKeyLike(controllerKeys, row->keys);
}

KeySet keysOfControllerChips(const std::vector<SensorChip>& chips) {
    KeySet keys;
    for (const SensorChip& chip : chips) {
        if (chip.name != appleSMCChip) continue;
        for (const SensorChannel& channel : chip.channels) {
            if (channel.isLabelled) keys.insert(channel.label);
        }
    }
    return keys;
}

} // namespace kelvinbar
