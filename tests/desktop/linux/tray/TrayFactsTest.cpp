#include "desktop/linux/tray/TrayFacts.h"

#include "tests/desktop/BusPeer.h"
#include "tests/desktop/EventLoop.h"

#include <QDBusMessage>
#include <chrono>
#include <future>

#include <gtest/gtest.h>

namespace kelvinbar::tray_facts_test {

namespace {

constexpr auto program = "org.kelvinbar.TrayFactsTest";

/// Asks in another thread, because the calls wait for a watcher that replies in this one.
TrayFacts askNow() {
    const PrivateBus bus;
    auto facts = std::async(std::launch::async,
                            [connection = bus.connection()] { return askForTray(connection, program); });
    EXPECT_TRUE(
        waitFor([&] { return facts.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return facts.get();
}

/// The program on the bus, without an item of its own.
class RunningProgram {
  public:
    RunningProgram() { EXPECT_TRUE(bus_.connection().registerService(program)); }

    ~RunningProgram() { bus_.connection().unregisterService(program); }

    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    QString address() const { return bus_.address(); }

  private:
    PrivateBus bus_;
};

TEST(TrayFacts, NothingIsKnownWithoutABus) {
    const TrayFacts facts = askForTray(QDBusConnection("no such bus"), program);
    EXPECT_FALSE(facts.hasBus);
    EXPECT_FALSE(facts.watcherProcess);
    EXPECT_FALSE(facts.isRunning);
}

TEST(TrayFacts, ASessionMayHaveNoWatcher) {
    const TrayFacts facts = askNow();
    EXPECT_TRUE(facts.hasBus);
    EXPECT_FALSE(facts.watcherProcess);
    EXPECT_FALSE(facts.hasHost);
    EXPECT_FALSE(facts.isRunning);
}

TEST(TrayFacts, TheWatcherTellsItsProcessAndItsHost) {
    FakeWatcher watcher;
    watcher.host = true;
    watcher.appear();
    const TrayFacts facts = askNow();
    EXPECT_EQ(facts.watcherProcess, "kelvinbar_deskt"); // the kernel's name of these tests
    EXPECT_TRUE(facts.hasHost);
    watcher.host = false;
    EXPECT_FALSE(askNow().hasHost);
}

TEST(TrayFacts, TheWatcherTellsWhetherItHasTheProgramsItem) {
    FakeWatcher watcher;
    watcher.host = true;
    watcher.appear();
    EXPECT_FALSE(askNow().isRegistered);
    const RunningProgram running;
    EXPECT_TRUE(askNow().isRunning);
    EXPECT_EQ(askNow().isRegistered, false);
    watcher.RegisterStatusNotifierItem(running.address() + "0/StatusNotifierItem"); // of another program
    EXPECT_EQ(askNow().isRegistered, false);
    watcher.RegisterStatusNotifierItem(running.address() + "/StatusNotifierItem");
    EXPECT_EQ(askNow().isRegistered, true);
}

TEST(TrayFacts, AWatcherNeedNotTellItsItems) {
    FakeWatcher watcher; // without a host to tell of, it has no properties
    watcher.appear();
    const RunningProgram running;
    const TrayFacts facts = askNow();
    EXPECT_TRUE(facts.isRunning);
    EXPECT_FALSE(facts.isRegistered);
    EXPECT_TRUE(facts.hasHost);
}

} // namespace

} // namespace kelvinbar::tray_facts_test
