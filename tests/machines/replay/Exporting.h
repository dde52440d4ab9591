#pragma once

#include "base/NotificationCenter.h"
#include "machines/replay/ReplayMachine.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/ManualQueues.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

/// The header of each snapshot that exportedText() returns, without the number of keys.
inline constexpr std::string_view exportedHead =
    "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: ";

/// The snapshot of `machine`, taken on one thread and always at the same time of day.
inline std::string exportedText(const Machine& machine) {
    using namespace std::chrono;
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    fakes::ManualMainQueue mainQueue;
    fakes::ManualBackgroundQueue backgroundQueue;
    fakes::FakeWallClock wallClock;
    wallClock.time = sys_days(2026y / March / 1) + 14h + 5min + 9s;
    const auto store = KelvinbarStore::create({.machine = machine,
                                               .defaults = defaults,
                                               .notifications = notifications,
                                               .mainQueue = mainQueue,
                                               .backgroundQueue = backgroundQueue,
                                               .wallClock = wallClock});
    backgroundQueue.runAll();
    mainQueue.drain();
    std::string text = store->exportText();
    store->shutdown();
    return text;
}

inline ReplayResult replayed(std::string_view text) {
    return makeReplayMachine(text, std::make_shared<fakes::FakeMonotonicClock>());
}

/// The snapshot of the machine that `text` replays; empty when there is none.
inline std::string exportedReplay(std::string_view text) {
    const ReplayResult replay = replayed(text);
    return replay.machine ? exportedText(*replay.machine) : std::string();
}

inline std::vector<std::size_t> lineNumbers(const std::vector<LineProblem>& problems) {
    std::vector<std::size_t> numbers(problems.size());
    std::ranges::transform(problems, numbers.begin(), &LineProblem::lineNumber);
    return numbers;
}

/// The snapshot of `machine`, after checking that its replay exports the same.
inline std::string exportThatReplays(const Machine& machine) {
    std::string first = exportedText(machine);
    const ReplayResult replay = replayed(first);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>()) << first;
    EXPECT_TRUE(replay.machine) << first;
    if (replay.machine) {
        EXPECT_EQ(exportedText(*replay.machine), first);
    }
    return first;
}

} // namespace kelvinbar
