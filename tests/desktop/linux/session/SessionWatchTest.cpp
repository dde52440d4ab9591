#include "desktop/linux/session/SessionWatch.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar::session_watch_test {

namespace {

constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto ownSession = "/org/freedesktop/login1/session/_31";
constexpr auto otherSession = "/org/freedesktop/login1/session/_32";

} // namespace

/// A login manager with one session, of the process that asks. Not on the bus until it appears.
class FakeLoginManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

  public:
    bool knowsSession = true;
    int questions = 0;

    void appear() {
        auto bus = bus_.connection();
        EXPECT_TRUE(bus.registerObject(managerPath, this, QDBusConnection::ExportAllSlots));
        EXPECT_TRUE(bus.registerService("org.freedesktop.login1"));
    }

    void lock(const char* session) {
        bus_.connection().send(QDBusMessage::createSignal(session, "org.freedesktop.login1.Session", "Lock"));
    }

    void prepareForSleep(bool isBeginning) {
        QDBusMessage signal =
            QDBusMessage::createSignal(managerPath, "org.freedesktop.login1.Manager", "PrepareForSleep");
        signal << isBeginning;
        bus_.connection().send(signal);
    }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    QDBusObjectPath GetSessionByPID(uint process, const QDBusMessage& call) {
        ++questions;
        EXPECT_EQ(process, static_cast<uint>(QCoreApplication::applicationPid()));
        if (!knowsSession) {
            call.setDelayedReply(true);
            bus_.connection().send(call.createErrorReply("org.freedesktop.login1.NoSessionForPID", "none"));
        }
        return QDBusObjectPath(ownSession);
    }

  private:
    PrivateBus bus_;
};

namespace {

class SessionWatchTest : public testing::Test {
  protected:
    void watch() {
        watch_ = std::make_unique<SessionWatch>(QDBusConnection::sessionBus(), [this] { ++departures_; });
        ASSERT_TRUE(waitFor([this] { return manager_.questions > 0; }));
        runEventLoop(std::chrono::milliseconds(100)); // the match rules take effect
    }

    FakeLoginManager manager_;
    std::unique_ptr<SessionWatch> watch_;
    int departures_ = 0;
};

TEST_F(SessionWatchTest, ReportsThatTheSessionIsLocked) {
    manager_.appear();
    watch();
    manager_.lock(ownSession);
    EXPECT_TRUE(waitFor([this] { return departures_ == 1; }));
}

TEST_F(SessionWatchTest, ReportsThatTheMachineGoesToSleepButNotThatItWakesUp) {
    manager_.appear();
    watch();
    manager_.prepareForSleep(true);
    EXPECT_TRUE(waitFor([this] { return departures_ == 1; }));
    manager_.prepareForSleep(false);
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(departures_, 1);
}

TEST_F(SessionWatchTest, IgnoresTheLockOfAnotherSession) {
    manager_.appear();
    watch();
    manager_.lock(otherSession);
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(departures_, 0);
}

TEST_F(SessionWatchTest, FollowsEverySessionIfItIsInNone) {
    manager_.knowsSession = false;
    manager_.appear();
    watch();
    manager_.lock(otherSession);
    EXPECT_TRUE(waitFor([this] { return departures_ == 1; }));
}

TEST_F(SessionWatchTest, DoesWithoutALoginManager) {
    const SessionWatch alone(QDBusConnection::sessionBus(), [this] { ++departures_; });
    const SessionWatch withoutBus(QDBusConnection("no such bus"), [this] { ++departures_; });
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(departures_, 0);
}

} // namespace
} // namespace kelvinbar::session_watch_test

#include "SessionWatchTest.moc"
