#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

namespace kelvinbar {

/// Reports that the user leaves: the session is locked or about to be, another one takes its place on the
/// screen, or the machine is about to sleep. All by the signals of the login manager
/// (org.freedesktop.login1). Without one, nothing is ever reported.
///
/// The session is the first of: that of this process, that of XDG_SESSION_ID, and the user's main one, since
/// a program that a service manager has started is in none. If there is none of them, every request to lock a
/// session of this user counts.
///
/// Limits: screen lockers that neither wait for the login manager nor tell it go unnoticed. In no session,
/// nothing but the requests is seen, and one of another user counts if the login manager does not tell whose
/// session it is. A program that was started over ssh follows the session of that. Main thread.
class SessionWatch final : public QObject {
    Q_OBJECT

  public:
    /// `bus` is the system bus. `onAway` is called once a report, on the main thread.
    SessionWatch(const QDBusConnection& bus, std::function<void()> onAway);

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus);

  private:
    using Answer = std::function<void(const QVariant& answer)>;

    void ask(QDBusMessage question, const Answer& onAnswered);
    void findSessionOfProcess();
    void findSessionOfEnvironment();
    void findUser();
    void findMainSessionOf(const QString& user);
    void follow(const QString& session);
    void followEverySession();

    QDBusConnection bus_;
    std::function<void()> onAway_;
    std::unique_ptr<QObject> questions_; ///< parent of those that are not yet answered
    bool isLocked_ = false;
    bool isActive_ = true;

  private slots: // NOLINT(readability-redundant-access-specifiers)

    void lockRequested() const { onAway_(); }

    void lockRequestedSomewhere(const QDBusMessage& signal);
    void sessionChanged(const QString& interface, const QVariantMap& changed);

    void preparingForSleep(bool isBeginning) const {
        if (isBeginning) onAway_();
    }
};

} // namespace kelvinbar
