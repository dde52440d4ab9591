#include "desktop/linux/tray/StatusNotifierWatcher.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <QDBusError>
#include <QDBusVariant>
#include <chrono>
#include <future>

#include <gtest/gtest.h>

namespace kelvinbar::status_notifier_watcher_test {

namespace {

/// Asks in another thread, because the call waits for a watcher that replies in this one.
bool isHostThereNow() {
    const PrivateBus bus;
    auto answer =
        std::async(std::launch::async, [connection = bus.connection()] { return isHostThere(connection); });
    EXPECT_TRUE(
        waitFor([&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return answer.get();
}

TEST(StatusNotifierWatcher, HasNoHostIfItDoesNotRun) { EXPECT_FALSE(isHostThereNow()); }

TEST(StatusNotifierWatcher, HasNoHostWithoutABus) {
    EXPECT_FALSE(isHostThere(QDBusConnection("no such bus")));
}

TEST(StatusNotifierWatcher, TellsWhetherItHasAHost) {
    FakeWatcher watcher;
    watcher.host = false;
    watcher.appear();
    EXPECT_FALSE(isHostThereNow());
    watcher.host = true;
    EXPECT_TRUE(isHostThereNow());
}

TEST(StatusNotifierWatcher, IsTrustedIfItDoesNotTell) {
    FakeWatcher watcher;
    watcher.appear();
    EXPECT_TRUE(isHostThereNow());
}

TEST(StatusNotifierWatcher, IsTrustedIfItDoesNotReply) {
    FakeWatcher watcher;
    watcher.host = false;
    watcher.appear();
    const PrivateBus bus;
    EXPECT_TRUE(isHostThere(bus.connection())); // keeps this thread, and with it the watcher
}

TEST(StatusNotifierWatcher, IsTrustedIfItsAnswerIsOfAnotherType) {
    const QDBusMessage reply = hostQuestion();
    EXPECT_TRUE(saysThatAHostIsThere(reply.createReply(QVariant("no"))));
    EXPECT_TRUE(saysThatAHostIsThere(reply.createErrorReply(QDBusError::UnknownProperty, "none")));
    EXPECT_FALSE(saysThatAHostIsThere(reply.createReply(QVariant::fromValue(QDBusVariant(false)))));
}

} // namespace
} // namespace kelvinbar::status_notifier_watcher_test
