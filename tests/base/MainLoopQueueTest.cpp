#include "base/MainLoopQueue.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::main_loop_queue_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainLoopQueue, RunsPostedWorkInPostingOrder) {
    MainLoopQueue queue;
    std::vector<int> ran;
    for (const int number : {1, 2, 3}) queue.post([&ran, number] { ran.push_back(number); });
    EXPECT_THAT(ran, IsEmpty()); // later, never at once
    queue.runUntil([&] { return ran.size() == 3; });
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(MainLoopQueue, RunsNothingWhenItIsDoneAlready) {
    MainLoopQueue queue;
    bool ran = false;
    queue.post([&] { ran = true; });
    queue.runUntil([] { return true; });
    EXPECT_FALSE(ran);
}

TEST(MainLoopQueue, AsksWhetherItIsDoneBeforeEachPiece) {
    MainLoopQueue queue;
    std::vector<std::string> log;
    int asked = 0;
    for (const std::string name : {"one", "two", "three"}) queue.post([&log, name] { log.push_back(name); });
    queue.runUntil([&] {
        log.emplace_back("done?");
        return ++asked == 3;
    });
    EXPECT_THAT(log, ElementsAre("done?", "one", "done?", "two", "done?"));
}

TEST(MainLoopQueue, KeepsWhatIsLeftForTheNextRun) {
    MainLoopQueue queue;
    std::vector<int> ran;
    for (const int number : {1, 2, 3}) queue.post([&ran, number] { ran.push_back(number); });
    queue.runUntil([&] { return !ran.empty(); });
    EXPECT_THAT(ran, ElementsAre(1));
    queue.runUntil([&] { return ran.size() == 3; });
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST(MainLoopQueue, RunsWorkThatWorkPostsAfterWhatWaitsAlready) {
    MainLoopQueue queue;
    std::vector<std::string> log;
    queue.post([&] {
        queue.post([&] { log.emplace_back("posted by the first"); });
        log.emplace_back("first");
    });
    queue.post([&] { log.emplace_back("second"); });
    queue.runUntil([&] { return log.size() == 3; });
    EXPECT_THAT(log, ElementsAre("first", "second", "posted by the first"));
}

TEST(MainLoopQueue, RunsOnTheThreadThatRunsItWhatManyThreadsPostEachInItsOrder) {
    constexpr std::size_t threadCount = 4;
    constexpr std::size_t postsEach = 500;
    MainLoopQueue queue;
    std::vector<std::vector<std::size_t>> arrived(threadCount);
    std::size_t total = 0;
    bool onlyHere = true;
    const auto here = std::this_thread::get_id();

    std::vector<std::thread> threads;
    for (std::size_t sender = 0; sender < threadCount; ++sender) {
        threads.emplace_back([&, sender] {
            for (std::size_t number = 0; number < postsEach; ++number) {
                queue.post([&, sender, number] {
                    arrived[sender].push_back(number);
                    ++total;
                    onlyHere = onlyHere && std::this_thread::get_id() == here;
                });
            }
        });
    }
    queue.runUntil([&] { return total == threadCount * postsEach; });
    for (std::thread& thread : threads) thread.join();

    EXPECT_TRUE(onlyHere);
    for (const std::vector<std::size_t>& numbers : arrived) {
        EXPECT_EQ(numbers.size(), postsEach);
        EXPECT_TRUE(std::ranges::is_sorted(numbers));
    }
}

TEST(MainLoopQueue, RingsAnAlarmOnceItsTimeHasCome) {
    MainLoopQueue queue;
    int rung = 0;
    const auto alarm = queue.makeAlarm([&] { ++rung; });
    alarm->set(std::chrono::milliseconds(0));
    queue.runUntil([&] { return rung > 0; });
    bool isDone = false;
    queue.post([&] { isDone = true; });
    queue.runUntil([&] { return isDone; });
    EXPECT_EQ(rung, 1);
}

TEST(MainLoopQueue, AClearedAlarmDoesNotRing) {
    MainLoopQueue queue;
    int rung = 0;
    bool isDone = false;
    const auto cleared = queue.makeAlarm([&] { ++rung; });
    auto destroyed = queue.makeAlarm([&] { ++rung; });
    const auto later = queue.makeAlarm([&] { isDone = true; });
    cleared->set(std::chrono::milliseconds(0));
    destroyed->set(std::chrono::milliseconds(0));
    later->set(std::chrono::milliseconds(1));
    cleared->clear();
    destroyed = nullptr;
    queue.runUntil([&] { return isDone; });
    EXPECT_EQ(rung, 0);
}

TEST(MainLoopQueue, RingsTheEarlierOfTwoAlarmsFirst) {
    MainLoopQueue queue;
    std::string order;
    const auto late = queue.makeAlarm([&] { order += "late"; });
    const auto early = queue.makeAlarm([&] { order += "early "; });
    late->set(std::chrono::milliseconds(2));
    early->set(std::chrono::milliseconds(1));
    queue.runUntil([&] { return order.ends_with("late"); });
    EXPECT_EQ(order, "early late");
}

TEST(MainLoopQueue, AnAlarmMayDestroyItselfAsItRings) {
    MainLoopQueue queue;
    std::unique_ptr<Alarm> alarm;
    bool rang = false;
    alarm = queue.makeAlarm([&] {
        alarm = nullptr;
        rang = true;
    });
    alarm->set(std::chrono::milliseconds(0));
    queue.runUntil([&] { return rang; });
    EXPECT_EQ(alarm, nullptr);
}

} // namespace
} // namespace kelvinbar::main_loop_queue_test
