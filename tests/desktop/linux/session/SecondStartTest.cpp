#include "desktop/linux/session/SecondStart.h"

#include "base/Text.h"
#include "desktop/linux/session/RunningInstance.h"
#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/tools/TemporaryFolder.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::second_start_test {

namespace {

using std::chrono::milliseconds;

constexpr auto name = "org.kelvinbar.SecondStartTest";

InstancePlace placeOn(const char* display) {
    return {.process = "12", .display = display, .waylandDisplay = {}, .session = "3"};
}

class SecondStartTest : public testing::Test {
  protected:
    /// Otherwise the bus would start the service of whatever desktop is installed.
    void SetUp() override { notifications_.appear(); }

    void startFirst(const char* display) {
        first_ = std::make_unique<RunningInstance>(firstBus_.connection(), name,
                                                   [this](const FocusRight&) { ++openings_; });
        ASSERT_TRUE(firstLock_.take(placeOn(display)));
    }

    /// An instance whose session has a bus of its own.
    void startFirstOnAnotherBus(const char* display) { ASSERT_TRUE(firstLock_.take(placeOn(display))); }

    [[nodiscard]] SecondStart startOn(const char* display) const {
        return {.bus = bus_.connection(), .name = name, .place = placeOn(display)};
    }

    /// Starts on another thread, while the event loops of the first instance and of the desktop run here.
    std::optional<int> statusOf(const SecondStart& start) {
        auto status =
            std::async(std::launch::async, [&] { return exitStatusOf(start, lock_, recording_.log); });
        EXPECT_TRUE(waitFor([&] { return status.wait_for(milliseconds(0)) == std::future_status::ready; }));
        return status.get();
    }

    [[nodiscard]] std::string told() const {
        return recording_.lines().size() == 1 ? recording_.lines().front() : "not one line";
    }

    TemporaryFolder folder_;
    PrivateBus firstBus_;
    InstanceLock firstLock_{folder_.path("lock")};
    std::unique_ptr<RunningInstance> first_;
    int openings_ = 0;
    PrivateBus bus_;
    InstanceLock lock_{folder_.path("lock")};
    fakes::RecordingLog recording_;
    FakeNotifications notifications_;
};

TEST_F(SecondStartTest, GoesOnWhereNobodyRuns) {
    EXPECT_EQ(statusOf(startOn(":0")), std::nullopt);
    EXPECT_TRUE(recording_.lines().empty());
}

TEST_F(SecondStartTest, GoesOnWhereTheFirstGaveUpNameAndLock) {
    startFirst(":0");
    firstLock_.release();
    first_->release();
    EXPECT_EQ(statusOf(startOn(":0")), std::nullopt);
}

TEST_F(SecondStartTest, OpensThePanelOnTheSameDisplay) {
    startFirst(":0");
    EXPECT_EQ(statusOf(startOn(":0")), 0);
    EXPECT_TRUE(waitFor([&] { return openings_ == 1; }));
    EXPECT_TRUE(recording_.lines().empty());
}

TEST_F(SecondStartTest, OpensThePanelWithoutADisplayOfItsOwn) {
    startFirst(":0");
    EXPECT_EQ(statusOf(startOn("")), 0);
    EXPECT_TRUE(waitFor([&] { return openings_ == 1; }));
}

TEST_F(SecondStartTest, OpensThePanelOfOneWithoutALock) {
    startFirst(":0");
    firstLock_.release();
    EXPECT_EQ(statusOf(startOn(":1")), 0);
    EXPECT_TRUE(waitFor([&] { return openings_ == 1; }));
}

TEST_F(SecondStartTest, AtLoginLeavesTheFirstAlone) {
    startFirst(":0");
    SecondStart start = startOn(":0");
    start.isAtLogin = true;
    EXPECT_EQ(statusOf(start), 0);
    runEventLoop(milliseconds(20));
    EXPECT_EQ(openings_, 0);
    EXPECT_TRUE(recording_.lines().empty());
}

TEST_F(SecondStartTest, OnAnotherDisplaySaysWhereTheFirstRuns) {
    startFirst(":0");
    EXPECT_EQ(statusOf(startOn(":1")), 1);
    const std::string text =
        "it already runs on display :0 (process 12, session 3); quit it there before you "
        "start it here";
    EXPECT_EQ(told(), "kelvinbar: " + text);
    EXPECT_EQ(notifications_.bodies(), QStringList(QString::fromStdString(text)));
    runEventLoop(milliseconds(20));
    EXPECT_EQ(openings_, 0);
}

TEST_F(SecondStartTest, OnAnotherDisplayAndBusSaysWhereTheFirstRuns) {
    startFirstOnAnotherBus(":0");
    EXPECT_EQ(statusOf(startOn(":1")), 1);
    EXPECT_TRUE(contains(told(), "on display :0 (process 12, session 3)")) << told();
}

TEST_F(SecondStartTest, OnAnotherBusOfTheSameDisplayIsToldSo) {
    startFirstOnAnotherBus(":0");
    EXPECT_EQ(statusOf(startOn(":0")), 1);
    EXPECT_EQ(told(),
              "kelvinbar: it already runs (process 12), but not on this session bus, so its panel cannot "
              "be opened from here");
}

TEST_F(SecondStartTest, WithoutABusIsToldOfTheFirstToo) {
    startFirstOnAnotherBus(":0");
    SecondStart start = startOn(":0");
    start.bus = QDBusConnection("no such bus");
    EXPECT_EQ(statusOf(start), 1);
    EXPECT_TRUE(contains(told(), "(process 12)")) << told();
}

TEST_F(SecondStartTest, NamesTheProcessOfAFirstThatDoesNotReply) {
    startFirst(":0");
    SecondStart start = startOn(":0");
    start.answerLimit = milliseconds(20);
    // The event loop of the first does not run here.
    EXPECT_EQ(exitStatusOf(start, lock_, recording_.log), 1);
    const std::string process = std::to_string(::getpid());
    EXPECT_EQ(told(), "kelvinbar: it already runs (process " + process +
                          "), but does not answer; end it with \"kill -KILL " + process +
                          "\" and start it again");
}

TEST_F(SecondStartTest, WaitsTwoSecondsForTheFirst) {
    EXPECT_EQ(startOn(":0").answerLimit, std::chrono::seconds(2));
}

} // namespace
} // namespace kelvinbar::second_start_test
