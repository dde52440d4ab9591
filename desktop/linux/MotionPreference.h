#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <map>
#include <utility>

namespace kelvinbar {

/// Whether the user has enabled reduced motion. Reads the setting from the desktop's settings portal
/// (org.freedesktop.portal.Settings) and follows its changes. There is a common setting, and older ones of
/// single desktops; one of them is enough.
///
/// Limits: reads asynchronously, so the result is false until the portal has replied, and stays false on
/// desktops without a portal. Main thread.
class MotionPreference final : public QObject {
    Q_OBJECT

  public:
    explicit MotionPreference(QDBusConnection bus);

    [[nodiscard]] bool prefersReducedMotion() const;

  private:
    using Setting = std::pair<QString, QString>; ///< group and name

    void readAll();
    void read(const Setting& setting);
    void update(const Setting& setting, QVariant value);

    QDBusConnection bus_;
    std::map<Setting, bool> isReduced_; ///< only settings that the desktop has

  private slots: // NOLINT(readability-redundant-access-specifiers)
    void settingChanged(const QString& group, const QString& name, const QDBusVariant& value);
};

} // namespace kelvinbar
