#include "desktop/linux/settings/MotionPreference.h"

#include <algorithm>
#include <array>
#include <vector>

namespace kelvinbar {

namespace {

/// A setting, and how to tell from its value that reduced motion is enabled.
struct MotionSetting {
    const char* group;
    const char* name;
    bool (*isReducedBy)(const QVariant& value);
};

const std::array motionSettings{
    MotionSetting{"org.freedesktop.appearance", "reduced-motion",
                  [](const QVariant& value) { return value.toUInt() == 1; }},
    MotionSetting{"org.gnome.desktop.interface", "enable-animations",
                  [](const QVariant& value) { return !value.toBool(); }},
    MotionSetting{"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
                  [](const QVariant& value) {
                      bool isNumber = false;
                      return value.toString().toDouble(&isNumber) == 0 && isNumber;
                  }},
};

std::vector<PortalSettings::Setting> namesOfSettings() {
    std::vector<PortalSettings::Setting> names;
    names.reserve(motionSettings.size());
    for (const MotionSetting& setting : motionSettings) names.emplace_back(setting.group, setting.name);
    return names;
}

} // namespace

MotionPreference::MotionPreference(const QDBusConnection& bus) : settings_(bus, namesOfSettings()) {
    connect(&settings_, &PortalSettings::settingRead, this, &MotionPreference::update);
}

void MotionPreference::update(const Setting& setting, const QVariant& value) {
    const auto* const known = std::ranges::find_if(motionSettings, [&](const MotionSetting& candidate) {
        return setting == Setting(candidate.group, candidate.name);
    });
    if (known != motionSettings.end()) isReduced_[setting] = known->isReducedBy(value);
}

bool MotionPreference::prefersReducedMotion() const {
    return std::ranges::any_of(isReduced_, [](const auto& entry) { return entry.second; });
}

} // namespace kelvinbar
