#include "catalogue/Settings.h"

namespace kelvinbar {

namespace {

template <typename Setting, std::size_t count>
std::optional<Setting> settingFromRawValue(const std::array<Setting, count>& all, std::string_view text) {
    for (const Setting setting : all) {
        if (rawValue(setting) == text) return setting;
    }
    return std::nullopt;
}

} // namespace

std::string_view rawValue(SMCSamplingRate rate) { return rate == SMCSamplingRate::fast ? "fast" : "medium"; }

std::optional<SMCSamplingRate> samplingRateFromRawValue(std::string_view text) {
    return settingFromRawValue(allSamplingRates, text);
}

std::string_view rawValue(SMCWindowDisplayMode mode) {
    return mode == SMCWindowDisplayMode::dynamic ? "dynamic" : "fixed";
}

std::optional<SMCWindowDisplayMode> windowDisplayModeFromRawValue(std::string_view text) {
    return settingFromRawValue(allWindowDisplayModes, text);
}

} // namespace kelvinbar
