// A chip that stalls delays the pass that reads it, and nothing else.

#include "base/MainLoopQueue.h"
#include "base/NotificationCenter.h"
#include "base/Text.h"
#include "base/WorkerQueue.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/applesmc/KeySourceDriver.h"
#include "smc/SMCBridge.h"
#include "smc/SMCKeyText.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeSystemInformation.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/replay/Exporting.h"

#include <future>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

/// One key, whose read blocks until it is released.
class StalledKey final : public SMCKeySource {
  public:
    StalledKey(std::promise<void>& begun, std::future<void> goOn) : begun_(begun), goOn_(std::move(goOn)) {}

    bool isPresent() override { return true; }

    std::size_t keyCount() override { return 1; }

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t) override { return packedSMCKey("TC0P"); }

    std::optional<KeyInfo> keyInfo(std::uint32_t) override {
        return KeyInfo{.dataSize = 2, .dataType = packedSMCKey("sp78")};
    }

    std::uint8_t readBytes(std::uint32_t, SMCBytes& bytes) override {
        begun_.set_value();
        goOn_.wait();
        bytes[0] = 42;
        return smcresult::success;
    }

  private:
    std::promise<void>& begun_;
    std::future<void> goOn_;
};

TEST(StalledSensor, LeavesTheMainThreadFree) {
    std::promise<void> begun;
    std::promise<void> goOn;
    const auto clock = std::make_shared<BootTimeClock>();
    auto driver = std::make_shared<KeySourceDriver>(std::make_unique<StalledKey>(begun, goOn.get_future()));
    const Machine machine{.source = std::make_shared<SMCBridge>(std::move(driver), nullptr, clock),
                          .system = std::make_shared<fakes::FakeSystemInformation>(),
                          .clock = clock};
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    MainLoopQueue mainQueue;
    WorkerQueue backgroundQueue(1);
    const SystemWallClock wallClock;
    const auto store = KelvinbarStore::create({.machine = machine,
                                               .defaults = defaults,
                                               .notifications = notifications,
                                               .mainQueue = mainQueue,
                                               .backgroundQueue = backgroundQueue,
                                               .wallClock = wallClock});
    begun.get_future().wait();

    // All of these return before the chip has answered.
    store->refresh(false);
    store->refreshMenuBarOnly();
    EXPECT_TRUE(store->readings().value().empty());
    EXPECT_TRUE(store->isLoading().value());

    goOn.set_value();
    mainQueue.runUntil([&] { return !store->isLoading().value(); });
    ASSERT_EQ(store->readings().value().size(), 1U);
    EXPECT_EQ(store->readings().value().front().key, "TC0P");
    store->shutdown();
}

/// Opening a pipe blocks until it has a writer.
TEST(StalledSensor, IsNotMadeByAPipeInPlaceOfAFile) {
    fakes::TemporaryTree tree;
    tree.write("sys/class/hwmon/hwmon0/name", "somechip\n");
    tree.write("sys/class/hwmon/hwmon0/temp1_input", "42000\n");
    ASSERT_EQ(mkfifo((tree.root() / "sys/class/hwmon/hwmon0/temp2_input").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((tree.root() / "sys/class/hwmon/hwmon0/temp2_label").c_str(), 0600), 0);
    fakes::RecordingLog log;
    const std::string snapshot =
        exportedText(makeLinuxMachine(tree.root(), std::make_shared<BootTimeClock>(), log.log));
    EXPECT_TRUE(contains(snapshot, "Active keys: 1\n\nsomechip-virtual-0/temp1\tsomechip\t")) << snapshot;
    EXPECT_TRUE(snapshot.ends_with("\t42 °C\tRAW=42000")) << snapshot;
}

} // namespace

} // namespace kelvinbar
