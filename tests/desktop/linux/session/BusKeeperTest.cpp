#include "desktop/linux/session/BusKeeper.h"

#include "desktop/linux/session/RunningInstance.h"
#include "desktop/linux/session/SessionWatch.h"
#include "desktop/linux/tray/StatusMenu.h"
#include "desktop/linux/tray/StatusNotifierItem.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/OwnBus.h"
#include "tests/fakes/RecordingLog.h"

#include <QDBusConnectionInterface>
#include <chrono>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::bus_keeper_test {

namespace {

using testing::HasSubstr;

class BusKeeperTest : public testing::Test {
  protected:
    BusKeeperTest() {
        QObject::connect(keeper_.get(), &BusKeeper::reconnected, [this](const QDBusConnection& bus) {
            ++reconnections_;
            current_ = bus;
        });
    }

    bool waitForReconnections(int count) {
        return waitFor([&] { return reconnections_ >= count; });
    }

    fakes::RecordingLog recording_;
    OwnBus bus_;
    QDBusConnection current_ = OwnBus::connection();
    int reconnections_ = 0;
    std::unique_ptr<BusKeeper> keeper_ =
        std::make_unique<BusKeeper>(current_, QDBusConnection::SystemBus, recording_.log);
};

TEST_F(BusKeeperTest, ConnectsAgainWhenTheBusHasRestarted) {
    const QString earlier = current_.name();
    ASSERT_TRUE(current_.isConnected());
    bus_.restart();
    ASSERT_TRUE(waitForReconnections(1));
    EXPECT_TRUE(current_.isConnected());
    EXPECT_NE(current_.name(), earlier);
    EXPECT_TRUE(current_.interface()->isServiceRegistered(current_.baseService()).value());
}

TEST_F(BusKeeperTest, ConnectsAgainAsOftenAsTheBusIsLost) {
    for (int restart = 1; restart <= 3; ++restart) {
        bus_.restart();
        ASSERT_TRUE(waitForReconnections(restart));
        EXPECT_TRUE(current_.isConnected());
    }
    EXPECT_EQ(reconnections_, 3);
}

TEST_F(BusKeeperTest, GoesOnTryingWhileThereIsNoBus) {
    bus_.stop();
    runEventLoop(4 * BusKeeper::firstDelay);
    EXPECT_EQ(reconnections_, 0);
    bus_.start();
    EXPECT_TRUE(waitForReconnections(1));
}

TEST_F(BusKeeperTest, LogsOnceThatTheBusIsLost) {
    bus_.stop();
    runEventLoop(4 * BusKeeper::firstDelay);
    EXPECT_THAT(recording_.lines(),
                testing::ElementsAre(HasSubstr("the system bus is lost; connecting again")));
}

TEST_F(BusKeeperTest, MayEndWhileItTries) {
    bus_.restart();
    runEventLoop(BusKeeper::firstDelay);
    keeper_ = nullptr;
    runEventLoop(BusKeeper::firstDelay);
    EXPECT_LE(reconnections_, 1);
}

TEST_F(BusKeeperTest, TheNameIsClaimedAgain) {
    constexpr auto name = "org.kelvinbar.Test";
    RunningInstance instance(current_, name, [](const FocusRight&) {});
    ASSERT_TRUE(instance.isThisOne());
    bus_.restart();
    ASSERT_TRUE(waitForReconnections(1));
    instance.moveTo(current_);
    const QDBusConnection other = OwnBus::connection();
    EXPECT_TRUE(
        waitFor([&] { return other.interface()->serviceOwner(name).value() == current_.baseService(); }));
    instance.release(); // without waiting for the bus
    EXPECT_TRUE(waitFor([&] { return !other.interface()->isServiceRegistered(name).value(); }));
}

TEST_F(BusKeeperTest, ANameThatWasGivenUpIsNotClaimedAgain) {
    constexpr auto name = "org.kelvinbar.Test";
    RunningInstance instance(current_, name, [](const FocusRight&) {});
    instance.release();
    bus_.restart();
    ASSERT_TRUE(waitForReconnections(1));
    instance.moveTo(current_);
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_FALSE(current_.interface()->isServiceRegistered(name).value());
}

TEST_F(BusKeeperTest, TheItemAndItsMenuAreOnTheBusAgain) {
    StatusMenu menu(current_);
    menu.setEntries({{"Quit", "Quit", [](uint) {}, std::nullopt}});
    StatusNotifierItem item(current_, {.activated = {}, .activationTokenGiven = {}}, recording_.log);
    bus_.restart();
    ASSERT_TRUE(waitForReconnections(1));
    menu.moveTo(current_);
    item.moveTo(current_);
    const QDBusConnection host = OwnBus::connection();
    const auto answers = [&](const char* path, const char* interface) {
        QDBusMessage question = QDBusMessage::createMethodCall(current_.baseService(), path,
                                                               "org.freedesktop.DBus.Properties", "GetAll");
        question << interface;
        const QDBusPendingCall reply = host.asyncCall(question);
        return waitFor([&] { return reply.isFinished(); }) && !reply.isError();
    };
    EXPECT_TRUE(answers("/StatusNotifierItem", "org.kde.StatusNotifierItem"));
    EXPECT_TRUE(answers(StatusMenu::path, "com.canonical.dbusmenu"));
}

TEST(BusKeeper, DoesNothingWithoutABus) {
    fakes::RecordingLog recording;
    BusKeeper keeper(QDBusConnection("no such bus"), QDBusConnection::SystemBus, recording.log);
    QObject::connect(&keeper, &BusKeeper::reconnected, [](const auto&) { ADD_FAILURE() << "connected"; });
    const OwnBus bus;
    runEventLoop(2 * BusKeeper::firstDelay);
    EXPECT_THAT(recording.lines(), testing::IsEmpty());
}

} // namespace
} // namespace kelvinbar::bus_keeper_test
