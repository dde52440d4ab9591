#include "desktop/linux/RunningInstance.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

constexpr auto name = "org.kelvinbar.Test";

void mustNotBeActivated() { ADD_FAILURE() << "activated"; }

class RunningInstanceTest : public testing::Test {
  protected:
    PrivateBus bus_;
    int activations_ = 0;
    RunningInstance first_{bus_.connection(), name, [this] { ++activations_; }};
};

} // namespace

TEST_F(RunningInstanceTest, TheFirstIsTheOne) {
    EXPECT_TRUE(first_.isThisOne());
    EXPECT_TRUE(PrivateBus().hasOwner(name));
    EXPECT_EQ(activations_, 0);
}

TEST_F(RunningInstanceTest, ASecondIsNotAndActivatesTheFirst) {
    std::atomic isFinished = false;
    std::atomic isTheOne = true;
    // A second instance on another thread. It blocks until the first replies, whose event loop runs here.
    std::thread program([&] {
        const PrivateBus bus;
        const RunningInstance second(bus.connection(), name, mustNotBeActivated);
        isTheOne = second.isThisOne();
        second.activateOther();
        isFinished = true;
    });
    EXPECT_TRUE(waitFor([&] { return isFinished.load(); }));
    program.join();
    EXPECT_FALSE(isTheOne);
    EXPECT_EQ(activations_, 1);
    EXPECT_TRUE(first_.isThisOne());
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
    EXPECT_EQ(activations_, 1);
    const QVariantMap platformData{{"desktop-startup-id", "1"}};
    EXPECT_EQ(launcher.call("Open", {QStringList("file:///tmp"), platformData}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(activations_, 2);
    EXPECT_EQ(launcher.call("ActivateAction", {"open", QVariantList(), platformData}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(activations_, 3);
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

TEST(RunningInstanceWithoutABus, IsTheOne) {
    const RunningInstance instance(QDBusConnection("no such bus"), name, mustNotBeActivated);
    EXPECT_TRUE(instance.isThisOne());
}

} // namespace kelvinbar
