#include "desktop/linux/session/RunningInstance.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/TemporaryVariable.h"

#include <QDBusMessage>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::running_instance_test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto name = "org.kelvinbar.Test";

void mustNotBeActivated(const FocusRight& /*right*/) { ADD_FAILURE() << "activated"; }

class RunningInstanceTest : public testing::Test {
  protected:
    bool waitForActivations(std::size_t count) {
        return waitFor([&] { return rights_.size() >= count; });
    }

    /// What a second instance gets on another thread, while the event loop of the first runs here.
    static ActivationResult activationBySecond(milliseconds limit = seconds(10)) {
        auto result = std::async(std::launch::async, [limit] {
            const PrivateBus bus;
            return activateRunningInstance(bus.connection(), name, limit);
        });
        EXPECT_TRUE(waitFor([&] { return result.wait_for(milliseconds(0)) == std::future_status::ready; }));
        return result.get();
    }

    PrivateBus bus_;
    std::vector<FocusRight> rights_;
    RunningInstance first_{bus_.connection(), name,
                           [this](const FocusRight& right) { rights_.push_back(right); }};
};

TEST_F(RunningInstanceTest, TheFirstIsTheOne) {
    EXPECT_TRUE(first_.isThisOne());
    EXPECT_TRUE(PrivateBus().hasOwner(name));
    EXPECT_TRUE(rights_.empty());
}

TEST_F(RunningInstanceTest, ASecondIsNotAndActivatesTheFirst) {
    const PrivateBus bus;
    const RunningInstance second(bus.connection(), name, mustNotBeActivated);
    EXPECT_FALSE(second.isThisOne());
    EXPECT_EQ(activationBySecond(), ActivationResult::opened);
    EXPECT_TRUE(waitForActivations(1));
    EXPECT_TRUE(first_.isThisOne());
}

TEST_F(RunningInstanceTest, ASecondThatIsEntitledToTheFocusPassesTheRightOn) {
    const TemporaryVariable token("XDG_ACTIVATION_TOKEN", "token-1");
    const TemporaryVariable startup("DESKTOP_STARTUP_ID", "launcher/terminal/12-3-host_TIME4567");
    EXPECT_EQ(activationBySecond(), ActivationResult::opened);
    ASSERT_TRUE(waitForActivations(1));
    EXPECT_EQ(rights_.front().activationToken, "token-1");
    EXPECT_EQ(rights_.front().timestamp, 4567U);
}

TEST_F(RunningInstanceTest, AStartWithoutSuchARightPassesNoneOn) {
    EXPECT_EQ(activationBySecond(), ActivationResult::opened);
    ASSERT_TRUE(waitForActivations(1));
    EXPECT_EQ(rights_.front().activationToken, "");
    EXPECT_EQ(rights_.front().timestamp, 0U);
}

TEST_F(RunningInstanceTest, OneThatDoesNotReplyIsToldFromOneThatDoes) {
    const PrivateBus bus;
    // The event loop of the first does not run here.
    EXPECT_EQ(activateRunningInstance(bus.connection(), name, milliseconds(20)),
              ActivationResult::unanswered);
}

TEST_F(RunningInstanceTest, OneThatGaveUpTheNameIsNotFound) {
    first_.release();
    EXPECT_FALSE(first_.isThisOne());
    const PrivateBus bus;
    EXPECT_EQ(activateRunningInstance(bus.connection(), name, seconds(10)), ActivationResult::nobodyRuns);
    RunningInstance next(bus.connection(), name, mustNotBeActivated);
    EXPECT_TRUE(next.isThisOne());
    EXPECT_FALSE(first_.claim());
    next.release();
    EXPECT_TRUE(first_.claim());
}

TEST_F(RunningInstanceTest, ASecondThatEndsLeavesTheNameToTheFirst) {
    {
        const PrivateBus bus;
        const RunningInstance second(bus.connection(), name, mustNotBeActivated);
        EXPECT_FALSE(second.isThisOne());
    }
    EXPECT_TRUE(PrivateBus().hasOwner(name));
}

TEST_F(RunningInstanceTest, IsActivatedByTheDesktopsLauncher) {
    BusPeer launcher(name, "/org/kelvinbar/Test", "org.freedesktop.Application");
    EXPECT_EQ(launcher.call("Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitForActivations(1));
    const QVariantMap platformData{{"desktop-startup-id", "1_TIME8"}};
    EXPECT_EQ(launcher.call("Open", {QStringList("file:///tmp"), platformData}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitForActivations(2));
    EXPECT_EQ(launcher.call("ActivateAction", {"open", QVariantList(), platformData}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitForActivations(3));
    EXPECT_EQ(rights_.back().timestamp, 8U);
}

TEST(RunningInstance, OneThatStartsAfterTheFirstEndedIsTheOne) {
    const PrivateBus bus;
    auto first = std::make_unique<RunningInstance>(bus.connection(), name, mustNotBeActivated);
    ASSERT_TRUE(first->isThisOne());
    first = nullptr;
    EXPECT_FALSE(bus.hasOwner(name));
    const PrivateBus other;
    const RunningInstance third(other.connection(), name, mustNotBeActivated);
    EXPECT_TRUE(third.isThisOne());
}

TEST(RunningInstance, ProgramsOfOtherNamesDoNotMeet) {
    const PrivateBus bus;
    const RunningInstance program(bus.connection(), name, mustNotBeActivated);
    const PrivateBus other;
    const RunningInstance demo(other.connection(), "org.kelvinbar.OtherTest", mustNotBeActivated);
    EXPECT_TRUE(program.isThisOne());
    EXPECT_TRUE(demo.isThisOne());
}

TEST(RunningInstance, ASlowOpeningDoesNotDelayTheReply) {
    const PrivateBus bus;
    std::future<ActivationResult> second;
    const auto isReplied = [&] { return second.wait_for(milliseconds(0)) == std::future_status::ready; };
    bool isOpened = false;
    const RunningInstance instance(bus.connection(), name, [&](const FocusRight&) {
        EXPECT_TRUE(waitFor(isReplied)); // stands for a panel that takes its time
        isOpened = true;
    });
    second = std::async(std::launch::async, [] {
        const PrivateBus other;
        return activateRunningInstance(other.connection(), name, seconds(10));
    });
    EXPECT_TRUE(waitFor([&] { return isOpened; }));
    EXPECT_EQ(second.get(), ActivationResult::opened);
}

TEST(RunningInstanceWithoutABus, IsTheOne) {
    const RunningInstance instance(QDBusConnection("no such bus"), name, mustNotBeActivated);
    EXPECT_TRUE(instance.isThisOne());
}

} // namespace
} // namespace kelvinbar::running_instance_test
