#include "base/MainLoopQueue.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {
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

} // namespace
} // namespace kelvinbar
