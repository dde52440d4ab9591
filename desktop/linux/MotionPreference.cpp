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
    bool (*asksForLess)(const QVariant& value);
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
    auto* const arrival =
        new QDBusServiceWatcher(portalService, bus_, QDBusServiceWatcher::WatchForRegistration, this);
    connect(arrival, &QDBusServiceWatcher::serviceRegistered, this, &MotionPreference::askAll);
    askAll();
}

void MotionPreference::askAll() {
    for (const MotionSetting& setting : motionSettings) ask({setting.group, setting.name});
}

void MotionPreference::ask(const Setting& setting) {
    QDBusMessage question =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, "Read");
    question << setting.first << setting.second;
    question.setAutoStartService(false); // desktops start their portal themselves
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, setting, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) note(setting, reply.value().variant());
        answer->deleteLater();
    });
}

void MotionPreference::settingChanged(const QString& group, const QString& name, const QDBusVariant& value) {
    note({group, name}, value.variant());
}

void MotionPreference::note(const Setting& setting, QVariant value) {
    const auto* const known = std::ranges::find_if(motionSettings, [&](const MotionSetting& candidate) {
        return setting == Setting(candidate.group, candidate.name);
    });
    if (known != motionSettings.end()) {
        asksForLess_[setting] = known->asksForLess(unwrapped(std::move(value)));
    }
}

bool MotionPreference::prefersReducedMotion() const {
    return std::ranges::any_of(asksForLess_, [](const auto& entry) { return entry.second; });
}

} // namespace kelvinbar
