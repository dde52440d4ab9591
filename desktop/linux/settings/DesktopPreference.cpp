#include "desktop/linux/settings/DesktopPreference.h"

#include <algorithm>
#include <array>
#include <vector>

namespace kelvinbar {

namespace {

constexpr auto isOne = [](const QVariant& value) { return value.toUInt() == 1; };

const std::array motionSettings{
    PreferenceSetting{"org.freedesktop.appearance", "reduced-motion", isOne},
    PreferenceSetting{"org.gnome.desktop.interface", "enable-animations",
                      [](const QVariant& value) { return !value.toBool(); }},
    PreferenceSetting{"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
                      [](const QVariant& value) {
                          bool isNumber = false;
                          return value.toString().toDouble(&isNumber) == 0 && isNumber;
                      }},
};

const std::array contrastSettings{
    PreferenceSetting{"org.freedesktop.appearance", "contrast", isOne},
    PreferenceSetting{"org.gnome.desktop.a11y.interface", "high-contrast",
                      [](const QVariant& value) { return value.toBool(); }},
};

std::vector<PortalSettings::Setting> namesOf(std::span<const PreferenceSetting> settings) {
    std::vector<PortalSettings::Setting> names;
    names.reserve(settings.size());
    for (const PreferenceSetting& setting : settings) names.emplace_back(setting.group, setting.name);
    return names;
}

} // namespace

std::span<const PreferenceSetting> reducedMotionSettings() { return motionSettings; }

std::span<const PreferenceSetting> moreContrastSettings() { return contrastSettings; }

DesktopPreference::DesktopPreference(const QDBusConnection& bus, std::span<const PreferenceSetting> settings)
    : settings_(settings), portal_(bus, namesOf(settings)) {
    connect(&portal_, &PortalSettings::settingRead, this, &DesktopPreference::update);
}

void DesktopPreference::update(const Setting& setting, const QVariant& value) {
    const auto known = std::ranges::find_if(settings_, [&](const PreferenceSetting& candidate) {
        return setting == Setting(candidate.group, candidate.name);
    });
    if (known != settings_.end()) isExpressedBy_[setting] = known->isExpressedBy(value);
}

bool DesktopPreference::isExpressed() const {
    return std::ranges::any_of(isExpressedBy_, [](const auto& entry) { return entry.second; });
}

} // namespace kelvinbar
