#include "desktop/linux/MotionPreference.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <algorithm>
#include <array>
#include <utility>

namespace kelvinbar {

namespace {

constexpr const char* portalService = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";

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

/// Portals wrap values in more variants than the signature has.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

MotionPreference::MotionPreference(QDBusConnection bus) : bus_(std::move(bus)) {
    bus_.connect(portalService, portalPath, settingsInterface, "SettingChanged", this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    // At login, the program may start before the portal.
    auto* const portalWatcher =
        new QDBusServiceWatcher(portalService, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(portalWatcher, &QDBusServiceWatcher::serviceRegistered, this, &MotionPreference::readAll);
    readAll();
}

void MotionPreference::readAll() {
    for (const MotionSetting& setting : motionSettings) read({setting.group, setting.name});
}

void MotionPreference::read(const Setting& setting) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, "Read");
    call << setting.first << setting.second;
    call.setAutoStartService(false); // desktops start their portal themselves
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, setting, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) update(setting, reply.value().variant());
        watcher->deleteLater();
    });
}

void MotionPreference::settingChanged(const QString& group, const QString& name, const QDBusVariant& value) {
    update({group, name}, value.variant());
}

void MotionPreference::update(const Setting& setting, QVariant value) {
    const auto* const known = std::ranges::find_if(motionSettings, [&](const MotionSetting& candidate) {
        return setting == Setting(candidate.group, candidate.name);
    });
    if (known != motionSettings.end()) {
        isReduced_[setting] = known->isReducedBy(unwrapped(std::move(value)));
    }
}

bool MotionPreference::prefersReducedMotion() const {
    return std::ranges::any_of(isReduced_, [](const auto& entry) { return entry.second; });
}

} // namespace kelvinbar
