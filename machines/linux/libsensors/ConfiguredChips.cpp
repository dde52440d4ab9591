#include "machines/linux/libsensors/ConfiguredChips.h"

#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/naming/LeftOut.h"

#include <algorithm>
#include <set>
#include <string>

namespace kelvinbar {

namespace {

bool isConfigurable(SensorKind kind) {
    switch (kind) {
    case SensorKind::temperature:
    case SensorKind::voltage:
    case SensorKind::current:
    case SensorKind::power:
    case SensorKind::energy:
    case SensorKind::fan:
    case SensorKind::humidity:
        return true;
    default:
        return false;
    }
}

/// Whether libsensors lists the channel unless the configuration ignores it. It expects voltages numbered
/// from 0 and all other channels from 1, and does not see a channel that breaks this rule.
bool isListed(const SensorChannel& channel) {
    return isConfigurable(channel.kind) && (channel.number > 0 || channel.kind == SensorKind::voltage);
}

std::set<std::string, std::less<>> ignoredFeatures(const SensorChip& chip, const ConfiguredChip& configured) {
    std::set<std::string, std::less<>> ignored;
    for (const SensorChannel& channel : chip.channels) {
        if (isListed(channel) && !configured.contains(channel.feature)) ignored.insert(channel.feature);
    }
    return ignored;
}

void applyLabel(SensorChannel& channel, const ConfiguredChip& configured) {
    const auto feature = configured.find(channel.feature);
    if (feature == configured.end()) return;
    const std::string& label = feature->second.label;
    if (label.empty() || label == channel.feature) return;
    channel.label = label;
    channel.isLabelled = true;
}

/// Whether the chip has a channel left.
bool applyToChip(SensorChip& chip, const ConfiguredChip& configured, LeftOutChannels* leftOut) {
    const auto ignored = ignoredFeatures(chip, configured);
    std::erase_if(chip.channels, [&](const SensorChannel& channel) {
        const bool isIgnored = ignored.contains(channel.feature);
        if (isIgnored) leaveOut(leftOut, chip, channel, LeftOutReason::ignored);
        return isIgnored;
    });
    for (SensorChannel& channel : chip.channels) applyLabel(channel, configured);
    return ignored.empty() || !chip.channels.empty();
}

} // namespace

void applyConfiguration(std::vector<SensorChip>& chips, SensorConfiguration& configuration,
                        LeftOutChannels* leftOut) {
    configuration.refresh(chips);
    std::erase_if(chips, [&](SensorChip& chip) {
        if (chip.name == appleSMCChip) return false; // its labels are its keys
        const ConfiguredChip* const configured = configuration.find(chip);
        return configured != nullptr && !applyToChip(chip, *configured, leftOut);
    });
}

std::shared_ptr<const ConfiguredValue> configuredValue(const SensorConfiguration& configuration,
                                                       const SensorChip& chip, const SensorChannel& channel) {
    if (!isConfigurable(channel.kind)) return nullptr;
    const ConfiguredChip* const configured = configuration.find(chip);
    if (configured == nullptr) return nullptr;
    const auto feature = configured->find(channel.feature);
    return feature == configured->end() ? nullptr : feature->second.value;
}

} // namespace kelvinbar
