#include "desktop/linux/session/ProgramOnBus.h"

#include "sensors/ReadWatch.h"
#include "sensors/WatchedSource.h"
#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/store/StoreFixture.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::program_on_bus_test {

namespace {

using fakes::setKeys;
using fakes::StoreFixture;
using fakes::temperatureKey;

using namespace std::chrono_literals;

constexpr auto interface = "org.kelvinbar.Kelvinbar1";

/// A program that pins one of two temperatures, and another program that asks it.
class ProgramOnBusTest : public StoreFixture {
  protected:
    ProgramOnBusTest() {
        defaults.values.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
        makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
        forgetHistory();
        offer();
    }

    void offer() {
        program_.emplace(bus_.connection(), *store, [this] { ++openings_; }, [this] { return now_; });
    }

    OfferedReadings readings() {
        return qdbus_cast<OfferedReadings>(caller_.properties()["Readings"].value<QDBusArgument>());
    }

    QVariantMap cost() {
        return qdbus_cast<QVariantMap>(caller_.properties()["Cost"].value<QDBusArgument>());
    }

    bool isRefreshTaken() { return caller_.call("Refresh").arguments().value(0).toBool(); }

    qsizetype announcements() { return caller_.received("Refreshed").size(); }

    /// A pass over the pinned readings, at a later time and with this temperature.
    void passWith(std::uint8_t degrees) {
        setKeys(driver(), {temperatureKey("TC0P", degrees), temperatureKey("TC1C", degrees)});
        wallClock.time += 3s;
        refreshMenuBarOnly();
    }

    fakes::RecordingLog recording_;
    PrivateBus bus_;
    std::chrono::steady_clock::time_point now_{1h};
    int openings_ = 0;
    std::optional<ProgramOnBus> program_;
    BusPeer caller_{bus_.address(), ProgramOnBus::path, interface};
};

TEST_F(ProgramOnBusTest, TellsWhatIsInTheTray) {
    const QVariantMap properties = caller_.properties();
    EXPECT_EQ(properties["Title"].toString(), "40°");
    EXPECT_EQ(properties["Pinned"].toStringList(), QStringList("TC0P"));
}

TEST_F(ProgramOnBusTest, TellsTheReadingsOfTheLastPass) {
    const OfferedReadings offered = readings();
    ASSERT_EQ(offered.size(), 2);
    EXPECT_EQ(offered[0].key, "TC0P");
    EXPECT_EQ(offered[0].number, 40);
    EXPECT_EQ(offered[0].unit, "°C");
    EXPECT_EQ(offered[1].key, "TC1C");
    passWith(50);
    EXPECT_EQ(readings()[0].number, 50);
    EXPECT_EQ(readings()[1].number, 41); // not pinned
}

TEST_F(ProgramOnBusTest, TellsWhenThePassWas) {
    const std::chrono::milliseconds day = 24h; // of the fixture
    EXPECT_EQ(caller_.properties()["LastUpdated"].toULongLong(), static_cast<qulonglong>(day.count()));
}

TEST_F(ProgramOnBusTest, TellsNothingBeforeTheFirstPass) {
    program_.reset();
    makeStore();
    offer();
    const QVariantMap properties = caller_.properties();
    EXPECT_EQ(properties["LastUpdated"].toULongLong(), 0U);
    EXPECT_EQ(readings().size(), 0);
    EXPECT_FALSE(cost().contains("AccessesOfLastPass"));
}

TEST_F(ProgramOnBusTest, ReadsNoSensorWhenItIsAsked) {
    const auto passes = backgroundQueue.startedCount;
    for (int question = 0; question < 3; ++question) EXPECT_EQ(caller_.properties().size(), 5);
    EXPECT_EQ(backgroundQueue.startedCount, passes);
    EXPECT_TRUE(driver().calls.empty());
}

TEST_F(ProgramOnBusTest, NoPropertyCanBeSet) {
    BusPeer writer(bus_.address(), ProgramOnBus::path, "org.freedesktop.DBus.Properties");
    for (const char* const name : {"Title", "Pinned", "LastUpdated", "Readings", "Cost"}) {
        const QVariant value = caller_.properties()[name];
        const QDBusMessage reply =
            writer.call("Set", {interface, name, QVariant::fromValue(QDBusVariant(value))});
        EXPECT_EQ(reply.errorName(), QDBusError::errorString(QDBusError::PropertyReadOnly)) << name;
    }
    EXPECT_EQ(store->menuBarKeys().value(), std::vector<std::string>{"TC0P"});
}

TEST_F(ProgramOnBusTest, SaysOnceThatAPassHasEnded) {
    EXPECT_EQ(announcements(), 0);
    passWith(50);
    const auto time = caller_.properties()["LastUpdated"].toULongLong();
    EXPECT_EQ(caller_.received("Refreshed"), QList<QVariantList>{{time}});
}

TEST_F(ProgramOnBusTest, SaysSoThoughNoValueHasChanged) {
    passWith(40);
    EXPECT_EQ(announcements(), 1);
}

TEST_F(ProgramOnBusTest, SaysSoWhenNothingCouldBeRead) {
    program_.reset();
    machineOfStore.system = nullptr;
    makeRefreshedStore({temperatureKey("TC0P", 40)});
    offer();
    store->shutdown(); // closes the connection, which would otherwise still work
    finishPasses();
    driver().hasService = false;
    refresh();
    ASSERT_TRUE(store->readings().value().empty());
    EXPECT_EQ(announcements(), 1);
    EXPECT_EQ(readings().size(), 0);
}

TEST_F(ProgramOnBusTest, SaysThatThePinsHaveChanged) {
    store->setMenuBarKeys({});
    EXPECT_EQ(announcements(), 1);
    EXPECT_EQ(caller_.properties()["Title"].toString(), "");
}

TEST_F(ProgramOnBusTest, SaysNothingWhileNothingIsRead) {
    store->setSamplingRate(SMCSamplingRate::fast);
    store->setMenuBarKeys({"TC0P"});
    store->refreshMenuBarOnly(); // has not ended
    EXPECT_EQ(announcements(), 0);
}

TEST_F(ProgramOnBusTest, RefreshReadsAllSensors) {
    setKeys(driver(), {temperatureKey("TC0P", 50), temperatureKey("TC1C", 51)});
    EXPECT_TRUE(isRefreshTaken());
    finishPasses();
    EXPECT_EQ(readings()[1].number, 51);
}

TEST_F(ProgramOnBusTest, RefreshIsTakenOnceInASamplingPeriod) {
    EXPECT_TRUE(isRefreshTaken());
    finishPasses();
    const auto passes = backgroundQueue.startedCount;
    now_ += 2999ms;
    EXPECT_FALSE(isRefreshTaken());
    EXPECT_EQ(backgroundQueue.startedCount, passes);
    now_ += 1ms;
    EXPECT_TRUE(isRefreshTaken());
    EXPECT_EQ(backgroundQueue.startedCount, passes + 1);
}

TEST_F(ProgramOnBusTest, TheSamplingPeriodIsTheOneThatTheUserHasSet) {
    EXPECT_TRUE(isRefreshTaken());
    store->setSamplingRate(SMCSamplingRate::fast);
    now_ += 999ms;
    EXPECT_FALSE(isRefreshTaken());
    now_ += 1ms;
    EXPECT_TRUE(isRefreshTaken());
}

TEST_F(ProgramOnBusTest, OpensThePanelAfterTheReply) {
    EXPECT_EQ(caller_.call("OpenPanel").type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitFor([this] { return openings_ == 1; }));
}

TEST_F(ProgramOnBusTest, TellsWhatTheProgramCosts) {
    const QVariantMap told = cost();
    for (const char* const number : {"MeasuredTime", "CpuTimePerMinute", "WakeUpsPerMinute"}) {
        EXPECT_EQ(told[number].typeId(), QMetaType::Double) << number;
        EXPECT_GT(told[number].toDouble(), 0) << number;
    }
    EXPECT_GT(told["PrivateMemory"].toULongLong(), 100U * 1024);
    EXPECT_GT(told["ResidentMemory"].toULongLong(), told["PrivateMemory"].toULongLong());
}

TEST_F(ProgramOnBusTest, LeavesOutTheAccessesOfAPassThatNobodyCounts) {
    EXPECT_FALSE(cost().contains("AccessesOfLastPass"));
}

TEST_F(ProgramOnBusTest, TellsTheAccessesOfTheLastPass) {
    machineOfStore.source =
        std::make_shared<WatchedSource>(machine.bridge, "controller", LogCategory::sourceKernel);
    machineOfStore.watch = std::make_shared<ReadWatch>(machine.clock, recording_.log);
    program_.reset();
    makeStore();
    offer();
    finishPasses();
    forgetHistory();
    refreshMenuBarOnly();
    constexpr std::size_t looks = 2; // whether the controller is open: for its status, and before it is read
    EXPECT_EQ(cost()["AccessesOfLastPass"].toUInt(), driver().calls.size() + looks);
}

TEST_F(ProgramOnBusTest, AnswersAFloodWithErrors) {
    constexpr int calls = 500; // faster than the rate admits
    int answers = 0;
    for (int call = 0; call < calls; ++call) {
        if (caller_.call("OpenPanel").type() == QDBusMessage::ReplyMessage) ++answers;
    }
    EXPECT_GE(answers, static_cast<int>(ProgramOnBus::burst));
    EXPECT_LT(answers, calls);
}

TEST_F(ProgramOnBusTest, IsOnlyOnTheBusThatItHasMovedTo) {
    const PrivateBus next;
    program_->moveTo(next.connection());
    BusPeer caller(next.address(), ProgramOnBus::path, interface);
    EXPECT_EQ(caller.properties().size(), 5);
    passWith(50);
    EXPECT_EQ(caller.received("Refreshed").size(), 1);
    EXPECT_EQ(caller_.call("OpenPanel").type(), QDBusMessage::ErrorMessage);
}

TEST_F(ProgramOnBusTest, IsGoneWithItsEnd) {
    program_.reset();
    EXPECT_EQ(caller_.call("OpenPanel").type(), QDBusMessage::ErrorMessage);
    passWith(50); // nobody is told
    EXPECT_EQ(announcements(), 0);
}

} // namespace
} // namespace kelvinbar::program_on_bus_test
