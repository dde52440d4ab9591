// Every allocation of a pass fails once, and once with all after it. The pass then has its whole result or
// none, and what the user has chosen stays.

#include "base/Text.h"
#include "machines/linux/LinuxMachine.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/ManualQueues.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/reliability/AttackedMachines.h"
#include "tests/reliability/Attempts.h"
#include "tests/reliability/SleepClock.h"
#include "tests/reliability/memory/AllocationFailure.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::pass_without_memory_test {

namespace {

namespace fs = std::filesystem;
using fakes::AllocationFailure;
using Extent = AllocationFailure::Extent;

/// A log that drops its lines.
struct Silence final : LogSink {
    void write(std::string_view /*line*/) override {}
};

/// A store whose passes run where the test says. The first pass is started, but has not run.
struct StoreOver {
    StoreOver(const Machine& machine, const TextList& pinned, const TextList& hidden) {
        if (!pinned.empty()) defaults.setTextList("KelvinbarMenuBarKeys", pinned);
        if (!hidden.empty()) defaults.setTextList("KelvinbarHiddenKeys", hidden);
        store = KelvinbarStore::create({.machine = machine,
                                        .defaults = defaults,
                                        .notifications = notifications,
                                        .mainQueue = mainQueue,
                                        .backgroundQueue = backgroundQueue,
                                        .wallClock = wallClock});
    }

    void finishPasses() {
        backgroundQueue.runAll();
        mainQueue.drain();
    }

    void refresh() {
        store->refresh(true);
        finishPasses();
    }

    /// What a user would lose: readings, pins, hidden keys, and what is stored of them.
    [[nodiscard]] std::string content() const {
        std::string text = store->exportText();
        for (const std::string& key : store->menuBarKeys().value()) text.append("\npinned ").append(key);
        for (const std::string& key : store->hiddenKeys().value()) text.append("\nhidden ").append(key);
        for (const char* const list : {"KelvinbarMenuBarKeys", "KelvinbarHiddenKeys"}) {
            for (const std::string& key : defaults.textList(list).value_or(TextList())) {
                text.append("\nstored ").append(key);
            }
        }
        return text;
    }

    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    fakes::ManualMainQueue mainQueue;
    fakes::ManualBackgroundQueue backgroundQueue;
    fakes::FakeWallClock wallClock;
    std::shared_ptr<KelvinbarStore> store;
};

/// The first and the last key are pinned, the one in the middle is hidden.
struct Choice {
    explicit Choice(const std::vector<SMCReading>& readings) {
        if (readings.empty()) return;
        pinned = {readings.front().key, readings.back().key};
        hidden = {readings.at(readings.size() / 2).key};
    }

    TextList pinned;
    TextList hidden;
};

using MakeMachine = std::function<Machine()>;

/// How often something failed.
using Count = std::int64_t;

class PassWithoutMemory {
  public:
    explicit PassWithoutMemory(MakeMachine makeMachine) : makeMachine_(std::move(makeMachine)) {
        StoreOver first(makeMachine_(), {}, {});
        first.finishPasses();
        choice_ = Choice(first.store->readings().value());
        StoreOver whole(makeMachine_(), choice_.pinned, choice_.hidden);
        whole.finishPasses();
        wholeContent_ = whole.content();
    }

    /// The first pass of a new machine.
    Count failFirstPass(Extent extent) {
        return failEach("first pass", extent, [&](Count number) {
            StoreOver over(makeMachine_(), choice_.pinned, choice_.hidden);
            const bool hasFailed = during(number, extent, [&] { over.finishPasses(); });
            EXPECT_FALSE(over.store->isRefreshing());
            // Nothing is said to be wrong: the first result is yet to come.
            EXPECT_TRUE(over.store->isLoading().value() || over.content() == wholeContent_);
            over.refresh();
            EXPECT_EQ(over.content(), wholeContent_);
            return hasFailed;
        });
    }

    /// A later pass, with a new discovery, of a machine whose readings are shown.
    Count failLaterPass(Extent extent) {
        StoreOver over(makeMachine_(), choice_.pinned, choice_.hidden);
        over.finishPasses();
        return failEach("later pass", extent, [&](Count number) {
            const bool hasFailed = during(number, extent, [&] { over.refresh(); });
            EXPECT_EQ(over.content(), wholeContent_);
            EXPECT_TRUE(!over.store->isLoading().value() || over.store->readings().value().empty());
            return hasFailed;
        });
    }

    Count failMenuBarPass(Extent extent) {
        StoreOver over(makeMachine_(), choice_.pinned, choice_.hidden);
        over.finishPasses();
        return failEach("pass for the menu bar", extent, [&](Count number) {
            const bool hasFailed = during(number, extent, [&] {
                over.store->refreshMenuBarOnly();
                over.finishPasses();
            });
            EXPECT_EQ(over.content(), wholeContent_);
            return hasFailed;
        });
    }

  private:
    /// Returns whether an allocation has failed.
    template <typename Work>
    static bool during(Count number, Extent extent, Work work) {
        const AllocationFailure failure(number, extent);
        work();
        return AllocationFailure::hasHappened();
    }

    /// Calls `pass` with 1, 2, … until it has no allocation of that number.
    static Count failEach(const std::string& name, Extent extent, const std::function<bool(Count)>& pass) {
        const char* const others = extent == Extent::one ? "" : " and all later";
        return fakes::attemptEach(name + others + ", without allocation",
                                  [&](Count number) -> Count { return pass(number) ? 1 : 0; });
    }

    MakeMachine makeMachine_;
    Choice choice_{{}};
    std::string wholeContent_;
};

void failEveryAllocation(const MakeMachine& makeMachine) {
    Count failures = 0;
    PassWithoutMemory passes(makeMachine);
    for (const Extent extent : {Extent::one, Extent::oneAndAllLater}) {
        failures += passes.failFirstPass(extent);
        failures += passes.failLaterPass(extent);
        failures += passes.failMenuBarPass(extent);
    }
    EXPECT_GT(failures, 0);
    testing::Test::RecordProperty("failures_tried", std::to_string(failures));
}

class RecordedMachineWithoutMemory : public testing::TestWithParam<fs::path> {};

TEST_P(RecordedMachineWithoutMemory, HasAWholePassOrNone) {
    const fakes::RecordedTree recorded(GetParam());
    Silence silence;
    Log log(silence);
    failEveryAllocation(
        [&] { return makeLinuxMachine(recorded.root(), std::make_shared<fakes::SleepClock>(), log); });
}

INSTANTIATE_TEST_SUITE_P(All, RecordedMachineWithoutMemory, testing::ValuesIn(fakes::attackedMachines()),
                         fakes::nameOfMachine);

TEST(ControllerWithoutMemory, HasAWholePassOrNone) {
    failEveryAllocation([] {
        const fakes::FakeMachine fake;
        fake.driver->addKeyCount(4).add("TC0P", "sp78", {0x28, 0x80}).add("F0Ac", "fpe2", {0x1C, 0x20});
        fake.driver->add("VC0C", "fp2e", {0x40, 0x00});
        fake.registry->add("SMCSuperIO", "chip",
                           Dictionary{{"CPU Fan", std::int64_t{900}},
                                      {"Fan with a long name", std::string("1200 turns a minute")},
                                      {"FAN2", Data{0x05, 0xDC}}});
        return fake.machine();
    });
}

} // namespace
} // namespace kelvinbar::pass_without_memory_test
