#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>
#include <utility>
#include <vector>

namespace kelvinbar {

/// Settings of the desktop, read from its settings portal (org.freedesktop.portal.Settings) and followed
/// while the program runs.
///
/// Limits: reads asynchronously, and nothing is ever read on desktops without a portal. The portal may start
/// after the program; the settings are read then. Main thread.
class PortalSettings final : public QObject {
    Q_OBJECT

  public:
    using Setting = std::pair<QString, QString>; ///< group and name

    PortalSettings(const QDBusConnection& bus, std::vector<Setting> settings);

    /// Goes on on another connection, after the earlier one was lost, and reads everything again.
    void moveTo(const QDBusConnection& bus);

  signals:
    /// A setting has been read, or has changed. Not emitted for settings that the desktop does not have.
    void settingRead(const kelvinbar::PortalSettings::Setting& setting, const QVariant& value);

  private:
    void readAll();
    void read(const Setting& setting);

    QDBusConnection bus_;
    std::vector<Setting> settings_;
    QDBusServiceWatcher portal_;

  private slots: // NOLINT(readability-redundant-access-specifiers)
    void settingChanged(const QString& group, const QString& name, const QDBusVariant& value);
};

} // namespace kelvinbar
