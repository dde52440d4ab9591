#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <functional>

namespace kelvinbar {

/// Reports that the user's session is about to be locked or that the machine is about to sleep, by the
/// signals of the login manager (org.freedesktop.login1). Without one, nothing is ever reported.
///
/// Limits: screen lockers that do not tell the login manager go unnoticed. Main thread.
class SessionWatch final : public QObject {
    Q_OBJECT

  public:
    /// `bus` is the system bus.
    SessionWatch(const QDBusConnection& bus, std::function<void()> onAway);

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus);

  private:
    void followLocks(const QDBusObjectPath& session);

    QDBusConnection bus_;
    std::function<void()> onAway_;

  private slots: // NOLINT(readability-redundant-access-specifiers)

    void locked() const { onAway_(); }

    void preparingForSleep(bool isBeginning) const {
        if (isBeginning) onAway_();
    }
};

} // namespace kelvinbar
