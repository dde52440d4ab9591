#include "desktop/linux/session/SessionWatch.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/TemporaryVariable.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QStringList>
#include <memory>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::session_watch_test {

constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto userPath = "/org/freedesktop/login1/user/own";
constexpr auto sessionInterface = "org.freedesktop.login1.Session";
constexpr auto ownSession = "/org/freedesktop/login1/session/_31";
constexpr auto otherSession = "/org/freedesktop/login1/session/_32";
constexpr auto ownSessionId = "1";

/// What the properties of the login manager name other objects by.
struct SessionReference {
    QString id;
    QDBusObjectPath path;
};

struct UserReference {
    uint id = 0;
    QDBusObjectPath path;
};

template <typename Reference>
QDBusArgument& write(QDBusArgument& argument, const Reference& reference) {
    argument.beginStructure();
    argument << reference.id << reference.path;
    argument.endStructure();
    return argument;
}

template <typename Reference>
const QDBusArgument& read(const QDBusArgument& argument, Reference& reference) {
    argument.beginStructure();
    argument >> reference.id >> reference.path;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const SessionReference& reference) {
    return write(argument, reference);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, SessionReference& reference) {
    return read(argument, reference);
}

QDBusArgument& operator<<(QDBusArgument& argument, const UserReference& reference) {
    return write(argument, reference);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, UserReference& reference) {
    return read(argument, reference);
}

/// The user of this process.
class FakeUser final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.User")
    Q_PROPERTY(kelvinbar::session_watch_test::SessionReference Display READ display)

  public:
    bool hasSession = true;
    int questions = 0;

    SessionReference display() {
        ++questions;
        return hasSession ? SessionReference{ownSessionId, QDBusObjectPath(ownSession)}
                          : SessionReference{"", QDBusObjectPath("/")};
    }
};

class FakeSession final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")
    Q_PROPERTY(kelvinbar::session_watch_test::UserReference User READ user)

  public:
    explicit FakeSession(uint user) : user_(user) {}

    UserReference user() const { return {user_, QDBusObjectPath(userPath)}; }

  private:
    uint user_;
};

/// A login manager with a session of this process and one of another user. Not on the bus until it appears.
class FakeLoginManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

  public:
    bool knowsProcess = true;
    bool knowsUser = true;
    FakeUser user;
    QStringList questions; ///< the methods that were called, in their order

    void appear() {
        qDBusRegisterMetaType<SessionReference>();
        qDBusRegisterMetaType<UserReference>();
        auto bus = bus_.connection();
        EXPECT_TRUE(bus.registerObject(managerPath, this, QDBusConnection::ExportAllSlots));
        EXPECT_TRUE(bus.registerObject(userPath, &user, QDBusConnection::ExportAllProperties));
        EXPECT_TRUE(bus.registerObject(ownSession, &ownSession_, QDBusConnection::ExportAllProperties));
        EXPECT_TRUE(bus.registerObject(otherSession, &otherSession_, QDBusConnection::ExportAllProperties));
        EXPECT_TRUE(bus.registerService("org.freedesktop.login1"));
    }

    void requestLock(const char* session) {
        bus_.connection().send(QDBusMessage::createSignal(session, sessionInterface, "Lock"));
    }

    void change(const char* session, const QVariantMap& properties,
                const QString& interface = sessionInterface) {
        QDBusMessage signal =
            QDBusMessage::createSignal(session, "org.freedesktop.DBus.Properties", "PropertiesChanged");
        signal << interface << properties << QStringList();
        bus_.connection().send(signal);
    }

    void prepareForSleep(bool isBeginning) {
        QDBusMessage signal =
            QDBusMessage::createSignal(managerPath, "org.freedesktop.login1.Manager", "PrepareForSleep");
        signal << isBeginning;
        bus_.connection().send(signal);
    }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    QDBusObjectPath GetSessionByPID(uint process, const QDBusMessage& call) {
        EXPECT_EQ(process, static_cast<uint>(QCoreApplication::applicationPid()));
        return answered(call, knowsProcess, ownSession);
    }

    QDBusObjectPath GetSession(const QString& id, const QDBusMessage& call) {
        return answered(call, id == ownSessionId, ownSession);
    }

    QDBusObjectPath GetUser(uint id, const QDBusMessage& call) {
        EXPECT_EQ(id, ::getuid());
        return answered(call, knowsUser, userPath);
    }

  private:
    QDBusObjectPath answered(const QDBusMessage& call, bool isKnown, const char* path) {
        questions.append(call.member());
        if (!isKnown) {
            call.setDelayedReply(true);
            bus_.connection().send(call.createErrorReply("org.freedesktop.login1.NoSuchObject", "none"));
        }
        return QDBusObjectPath(path);
    }

    FakeSession ownSession_{::getuid()};
    FakeSession otherSession_{::getuid() + 1};
    PrivateBus bus_;
};

namespace {

constexpr std::chrono::milliseconds settlingTime{100};

class SessionWatchTest : public testing::Test {
  protected:
    /// Watches, and waits until the session is found or not.
    void watch() {
        manager_.appear();
        watch_ = std::make_unique<SessionWatch>(QDBusConnection::sessionBus(), [this] { ++departures_; });
        ASSERT_TRUE(waitFor([this] { return !manager_.questions.isEmpty(); }));
        runEventLoop(settlingTime); // the match rules take effect
    }

    /// How often a departure is reported from now on.
    int departures(int expected) {
        waitFor([&] { return departures_ >= expected; });
        runEventLoop(settlingTime);
        return std::exchange(departures_, 0);
    }

    TemporaryVariable sessionOfEnvironment_{"XDG_SESSION_ID", nullptr};
    FakeLoginManager manager_;
    std::unique_ptr<SessionWatch> watch_;
    int departures_ = 0;
};

TEST_F(SessionWatchTest, ReportsThatALockIsRequested) {
    watch();
    manager_.requestLock(ownSession);
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, ReportsThatTheDesktopHasLockedTheSession) {
    watch();
    manager_.change(ownSession, {{"LockedHint", true}});
    EXPECT_EQ(departures(1), 1);
    manager_.change(ownSession, {{"LockedHint", false}});
    EXPECT_EQ(departures(0), 0);
    manager_.change(ownSession, {{"LockedHint", true}});
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, ReportsThatTheUserSwitchesToAnotherSessionButNotThatTheUserReturns) {
    watch();
    manager_.change(ownSession, {{"Active", false}, {"State", "online"}});
    EXPECT_EQ(departures(1), 1);
    manager_.change(ownSession, {{"Active", true}, {"State", "active"}});
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, ReportsAChangeOnce) {
    watch();
    manager_.change(ownSession, {{"LockedHint", true}, {"Active", false}});
    EXPECT_EQ(departures(1), 1);
    manager_.change(ownSession, {{"LockedHint", true}, {"Active", false}});
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, IgnoresOtherChangesOfTheSession) {
    watch();
    manager_.change(ownSession, {{"IdleHint", true}});
    manager_.change(ownSession, {{"LockedHint", true}}, "org.example.Other");
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, ReportsThatTheMachineGoesToSleepButNotThatItWakesUp) {
    watch();
    manager_.prepareForSleep(true);
    EXPECT_EQ(departures(1), 1);
    manager_.prepareForSleep(false);
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, IgnoresTheLockOfAnotherSession) {
    watch();
    manager_.requestLock(otherSession);
    manager_.change(otherSession, {{"LockedHint", true}, {"Active", false}});
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, AsksNoMoreThanItsProcessIfThatIsInASession) {
    watch();
    EXPECT_EQ(manager_.questions, QStringList("GetSessionByPID"));
}

TEST_F(SessionWatchTest, FollowsTheSessionOfTheEnvironmentIfItsProcessIsInNone) {
    const TemporaryVariable session("XDG_SESSION_ID", ownSessionId);
    manager_.knowsProcess = false;
    watch();
    EXPECT_EQ(manager_.questions, QStringList({"GetSessionByPID", "GetSession"}));
    manager_.requestLock(otherSession);
    manager_.change(ownSession, {{"LockedHint", true}});
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, FollowsTheUsersMainSessionIfItIsInNone) {
    const TemporaryVariable session("XDG_SESSION_ID", "ended");
    manager_.knowsProcess = false;
    watch();
    EXPECT_EQ(manager_.questions, QStringList({"GetSessionByPID", "GetSession", "GetUser"}));
    EXPECT_EQ(manager_.user.questions, 1);
    manager_.requestLock(otherSession);
    manager_.change(ownSession, {{"LockedHint", true}});
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, FollowsEverySessionOfTheUserIfThereIsNoMainOne) {
    manager_.knowsProcess = false;
    manager_.user.hasSession = false;
    watch();
    manager_.requestLock(ownSession);
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, NeverFollowsTheSessionOfAnotherUser) {
    manager_.knowsProcess = false;
    manager_.knowsUser = false;
    watch();
    manager_.requestLock(otherSession);
    EXPECT_EQ(departures(0), 0);
}

TEST_F(SessionWatchTest, ReportsTheLockOfASessionWhoseUserIsUnknown) {
    manager_.knowsProcess = false;
    manager_.knowsUser = false;
    watch();
    manager_.requestLock("/org/freedesktop/login1/session/_33");
    EXPECT_EQ(departures(1), 1);
}

TEST_F(SessionWatchTest, DoesWithoutALoginManager) {
    const SessionWatch alone(QDBusConnection::sessionBus(), [this] { ++departures_; });
    const SessionWatch withoutBus(QDBusConnection("no such bus"), [this] { ++departures_; });
    EXPECT_EQ(departures(0), 0);
}

} // namespace
} // namespace kelvinbar::session_watch_test

#include "SessionWatchTest.moc"
