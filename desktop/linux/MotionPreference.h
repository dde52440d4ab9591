#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <map>
#include <utility>

namespace kelvinbar {

/// Whether the user has asked the desktop for less motion, as the desktop's settings portal tells and goes on
/// telling. Desktops without a running portal ask for none. Main thread.
class MotionPreference final : public QObject {
    Q_OBJECT

  public:
    explicit MotionPreference(QDBusConnection bus);

    [[nodiscard]] bool prefersReducedMotion() const;

  private:
    using Setting = std::pair<QString, QString>;

    void askAll();
    void ask(const Setting& setting);
    void note(const Setting& setting, QVariant value);

    QDBusConnection bus_;
    std::map<Setting, bool> asksForLess_; ///< what each setting says that the desktop has

  private slots: // NOLINT(readability-redundant-access-specifiers)
    void settingChanged(const QString& group, const QString& name, const QDBusVariant& value);
};

} // namespace kelvinbar
