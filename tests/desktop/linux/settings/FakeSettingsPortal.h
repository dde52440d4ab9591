#pragma once

#include "tests/desktop/BusPeer.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>
#include <map>
#include <utility>

namespace kelvinbar {

/// A settings portal with settings that a test sets.
class FakeSettingsPortal final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    FakeSettingsPortal() {
        bus_.connection().registerObject(path, this, QDBusConnection::ExportAllSlots);
        bus_.connection().registerService(service);
    }

    FakeSettingsPortal(const FakeSettingsPortal&) = delete;
    FakeSettingsPortal& operator=(const FakeSettingsPortal&) = delete;

    ~FakeSettingsPortal() override { bus_.connection().unregisterService(service); }

    void set(const QString& group, const QString& name, const QVariant& value) {
        settings_[{group, name}] = value;
    }

    void change(const QString& group, const QString& name, const QVariant& value) {
        set(group, name, value);
        QDBusMessage signal =
            QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
        signal << group << name << QVariant::fromValue(QDBusVariant(value));
        bus_.connection().send(signal);
    }

    [[nodiscard]] int readCount() const { return readCount_; }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    /// Wraps the value in two variants, as portals do.
    QDBusVariant Read(const QString& group, const QString& name) {
        ++readCount_;
        const auto found = settings_.find({group, name});
        if (found != settings_.end()) return QDBusVariant(QVariant::fromValue(QDBusVariant(found->second)));
        sendErrorReply("org.freedesktop.portal.Error.NotFound", "Requested setting not found");
        return {};
    }

  private:
    static constexpr const char* service = "org.freedesktop.portal.Desktop";
    static constexpr const char* path = "/org/freedesktop/portal/desktop";

    PrivateBus bus_;
    std::map<std::pair<QString, QString>, QVariant> settings_;
    int readCount_ = 0;
};

} // namespace kelvinbar
