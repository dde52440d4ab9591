#include "desktop/linux/settings/PortalSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <algorithm>

namespace kelvinbar {

namespace {

constexpr const char* portalService = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";

/// Portals wrap values in more variants than the signature has.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalSettings::PortalSettings(const QDBusConnection& bus, std::vector<Setting> settings)
    : bus_(bus), settings_(std::move(settings)) {
    // At login, the program may start before the portal.
    portal_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    portal_.addWatchedService(portalService);
    connect(&portal_, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::readAll);
    moveTo(bus);
}

void PortalSettings::moveTo(const QDBusConnection& bus) {
    bus_ = bus;
    bus_.connect(portalService, portalPath, settingsInterface, "SettingChanged", this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    portal_.setConnection(bus_);
    readAll();
}

void PortalSettings::readAll() {
    for (const Setting& setting : settings_) read(setting);
}

void PortalSettings::read(const Setting& setting) {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, "Read");
    call << setting.first << setting.second;
    call.setAutoStartService(false); // desktops start their portal themselves
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, setting, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) emit settingRead(setting, unwrapped(reply.value().variant()));
        watcher->deleteLater();
    });
}

void PortalSettings::settingChanged(const QString& group, const QString& name, const QDBusVariant& value) {
    const Setting setting(group, name);
    if (std::ranges::find(settings_, setting) != settings_.end()) {
        emit settingRead(setting, unwrapped(value.variant()));
    }
}

} // namespace kelvinbar
