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
#include "store/SnapshotExport.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeSystemInformation.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/SystemCalls.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/replay/Exporting.h"
#include "tools/SnapshotTaker.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <future>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::stalled_sensor_test {

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

/// A store over chips whose files a test can stall. The clock of the watch stands still until the test moves
/// it.
struct StalledChip : testing::Test {
    static constexpr const char* processorFile = "sys/class/hwmon/hwmon0/temp1_input";
    static constexpr const char* driveFile = "sys/class/hwmon/hwmon1/temp1_input";
    static constexpr const char* processorKey = "k10temp-virtual-0/temp1";
    static constexpr const char* driveKey = "nvme-virtual-0/temp1";
    static constexpr std::chrono::milliseconds limit{1};

    fakes::TemporaryTree tree;
    fakes::RecordingLog log;
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    Machine machine = makeLinuxMachine(tree.root(), clock, log.log, limit);
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    MainLoopQueue mainQueue;
    WorkerQueue workers{ReadWatch::mostSilent + 3};
    SystemWallClock wallClock;
    std::shared_ptr<KelvinbarStore> store;

    StalledChip() {
        addChip(0, "k10temp", "45000\n");
        addChip(1, "nvme", "38000\n");
    }

    void addChip(int number, const std::string& name, const std::string& value) {
        const std::string folder = "sys/class/hwmon/hwmon" + std::to_string(number);
        tree.write(folder + "/name", name + "\n");
        tree.write(folder + "/temp1_label", "Sensor\n");
        tree.write(folder + "/temp1_input", value);
    }

    void startStore() {
        store = KelvinbarStore::create({.machine = machine,
                                        .defaults = defaults,
                                        .notifications = notifications,
                                        .mainQueue = mainQueue,
                                        .backgroundQueue = workers,
                                        .wallClock = wallClock});
    }

    void finishRefresh() {
        mainQueue.runUntil([&] { return store->statusMessage().value() != store->texts().reading; });
    }

    void startRefreshedStore() {
        startStore();
        finishRefresh();
    }

    /// Waits until a pass is stuck in `file`, and lets the limit pass.
    void letTheLimitPass(const fakes::StalledFile& file) {
        file.waitForVictim();
        clock->advance(limit);
    }

    /// Refreshes while `path` does not answer.
    void refreshWithout(const fakes::StalledFile& file) {
        store->refresh(false);
        letTheLimitPass(file);
        finishRefresh();
    }

    [[nodiscard]] SMCReading reading(const std::string& key) const {
        const auto& all = store->readings().value();
        const auto found = std::ranges::find(all, key, &SMCReading::key);
        return found == all.end() ? SMCReading() : *found;
    }

    [[nodiscard]] fakes::StalledFile stalled(const char* path) const {
        return fakes::StalledFile(tree.root() / path);
    }
};

TEST_F(StalledChip, SaysNoAnswerWhileTheOthersGoOn) {
    startRefreshedStore();
    ASSERT_EQ(reading(driveKey).displayValue(), "38 °C");
    tree.write(processorFile, "46000\n");
    const fakes::StalledFile file = stalled(driveFile);
    refreshWithout(file);
    EXPECT_EQ(reading(processorKey).displayValue(), "46 °C");
    EXPECT_EQ(reading(driveKey).displayValue(), "no answer");
    EXPECT_EQ(reading(driveKey).numericValue, std::nullopt);
    EXPECT_EQ(reading(driveKey).unit, "");
    EXPECT_EQ(reading(driveKey).raw, "no answer");
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"kelvinbar: no answer from " + (tree.root() / driveFile).string() +
                                       " in 0 s; " + (tree.root() / "sys/class/hwmon/hwmon1").string() +
                                       " is set aside until it answers"});
}

TEST_F(StalledChip, KeepsItsPins) {
    startRefreshedStore();
    store->setMenuBarKeys({driveKey, processorKey});
    store->hideReading(reading(driveKey));
    store->setMenuBarKeys({driveKey});
    const fakes::StalledFile file = stalled(driveFile);
    refreshWithout(file);
    EXPECT_EQ(store->menuBarKeys().value(), std::vector<std::string>{driveKey});
    EXPECT_EQ(store->hiddenKeys().value(), KeySet{driveKey});
    EXPECT_EQ(store->menuBarReadings().size(), 1U);
}

TEST_F(StalledChip, IsLeftOutOfAMenuBarRefresh) {
    startRefreshedStore();
    store->setMenuBarKeys({driveKey, processorKey});
    tree.write(processorFile, "47000\n");
    const fakes::StalledFile file = stalled(driveFile);
    store->refreshMenuBarOnly();
    letTheLimitPass(file);
    mainQueue.runUntil([&] { return reading(driveKey).value == noAnswer; });
    EXPECT_EQ(reading(processorKey).displayValue(), "47 °C");
}

TEST_F(StalledChip, IsUsedAgainWhenItsReadReturns) {
    startRefreshedStore();
    {
        const fakes::StalledFile file = stalled(driveFile);
        refreshWithout(file);
        ASSERT_EQ(reading(driveKey).value, noAnswer);
    }
    while (reading(driveKey).value == noAnswer) {
        store->refresh(false);
        finishRefresh();
    }
    EXPECT_EQ(reading(driveKey).displayValue(), "38 °C");
}

TEST_F(StalledChip, IsLeftOutOfTheFirstDiscoveryAndFoundWhenItAnswers) {
    defaults.setTextList("KelvinbarMenuBarKeys", {driveKey});
    {
        const fakes::StalledFile file = stalled("sys/class/hwmon/hwmon1/temp1_label");
        startStore();
        letTheLimitPass(file);
        finishRefresh();
        EXPECT_EQ(reading(processorKey).displayValue(), "45 °C");
        EXPECT_EQ(reading(driveKey).key, "");
        EXPECT_EQ(store->silentDevices().size(), 1U);
        EXPECT_EQ(store->menuBarKeys().value(), std::vector<std::string>{driveKey});
    }
    while (reading(driveKey).key.empty()) {
        store->refresh(false);
        finishRefresh();
    }
    EXPECT_EQ(reading(driveKey).displayValue(), "38 °C");
    EXPECT_TRUE(store->silentDevices().empty());
}

TEST_F(StalledChip, KeepsItsSensorsThroughADiscovery) {
    startRefreshedStore();
    const fakes::StalledFile file = stalled("sys/class/hwmon/hwmon1/temp1_label");
    store->refresh(true);
    letTheLimitPass(file);
    finishRefresh();
    EXPECT_EQ(reading(driveKey).value, noAnswer);
    EXPECT_EQ(reading(processorKey).displayValue(), "45 °C");
}

TEST_F(StalledChip, NoMoreThanFourThreadsGetStuck) {
    std::list<fakes::StalledFile> files;
    for (int number = 2; number < 5; ++number) addChip(number, "chip" + std::to_string(number), "20000\n");
    startRefreshedStore();
    ASSERT_EQ(store->readings().value().size(), 5U);
    for (int number = 0; number < 5; ++number) {
        files.emplace_back(tree.root() / ("sys/class/hwmon/hwmon" + std::to_string(number) + "/temp1_input"));
    }
    store->refresh(false);
    // In ascending order of the keys: chip2, chip3, chip4, k10temp. The drive is not tried any more.
    for (const std::size_t number : {2U, 3U, 4U, 0U}) {
        auto& file = *std::next(files.begin(), static_cast<std::ptrdiff_t>(number));
        bool hasVictim = false;
        std::thread waiting([&] {
            file.waitForVictim();
            clock->advance(limit);
            mainQueue.post([&] { hasVictim = true; });
        });
        mainQueue.runUntil([&] { return hasVictim; });
        waiting.join();
    }
    finishRefresh();
    for (const SMCReading& each : store->readings().value()) EXPECT_EQ(each.value, noAnswer) << each.key;
    EXPECT_EQ(store->readings().value().size(), 5U);
    EXPECT_FALSE(std::next(files.begin())->hasVictim());
}

TEST_F(StalledChip, DoesNotKeepTheSourceFromClosing) {
    startRefreshedStore();
    {
        const fakes::StalledFile file = stalled(driveFile);
        store->refresh(false);
        file.waitForVictim();
        store->shutdown();
        EXPECT_FALSE(workers.finish(std::chrono::milliseconds(1)));
    }
    EXPECT_TRUE(workers.finish(std::chrono::minutes(1)));
}

TEST_F(StalledChip, CostsNoAlarmOnceEveryPassHasEnded) {
    startRefreshedStore();
    clock->advance(std::chrono::hours(1));
    bool isDone = false;
    const auto later = mainQueue.makeAlarm([&] { isDone = true; });
    later->set(2 * limit);
    mainQueue.runUntil([&] { return isDone; });
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(StalledChip, ASnapshotShowsTheRestAndNamesIt) {
    SnapshotTaker taker; // whose threads end after the file has answered
    const fakes::StalledFile file = stalled(driveFile);
    std::thread waiting([&] { letTheLimitPass(file); });
    const Snapshot snapshot = taker.take(machine);
    waiting.join();
    const std::string text = snapshotText(snapshot.readings, snapshot.time);
    EXPECT_TRUE(contains(text, "45 °C")) << text;
    EXPECT_TRUE(text.ends_with("\tno answer\tRAW=no answer")) << text;
    EXPECT_TRUE(snapshot.hasAnswers);
    ASSERT_EQ(snapshot.silent.size(), 1U);
    EXPECT_EQ(snapshot.silent[0].file, (tree.root() / driveFile).string());
}

TEST_F(StalledChip, ASnapshotWithoutAnyAnswerSaysSo) {
    tree.remove("sys/class/hwmon/hwmon0");
    SnapshotTaker taker; // whose threads end after the file has answered
    const fakes::StalledFile file = stalled(driveFile);
    std::thread waiting([&] { letTheLimitPass(file); });
    EXPECT_FALSE(taker.take(machine).hasAnswers);
    waiting.join();
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
} // namespace kelvinbar::stalled_sensor_test
