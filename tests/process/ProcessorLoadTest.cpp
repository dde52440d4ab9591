#include "process/ProcessorLoad.h"

#include <chrono>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

namespace kelvinbar::processor_load_test {

namespace {

using namespace std::chrono_literals;

std::chrono::nanoseconds timeOn(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// What the threads other than this one have computed so far.
std::chrono::nanoseconds cpuTimeOfOthers() {
    return timeOn(CLOCK_PROCESS_CPUTIME_ID) - timeOn(CLOCK_THREAD_CPUTIME_ID);
}

/// Waits until other threads have computed for `time` more. Without a load, it does not return.
void waitForComputing(std::chrono::nanoseconds time) {
    const auto before = cpuTimeOfOthers();
    while (cpuTimeOfOthers() - before < time) std::this_thread::yield();
}

/// Of this process.
std::size_t threadCount() {
    using Folder = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Folder("/proc/self/task"), Folder()));
}

TEST(ProcessorLoad, ComputesOnEveryProcessor) {
    ProcessorLoad load;
    EXPECT_EQ(load.begin(1h), std::thread::hardware_concurrency());
    waitForComputing(50ms);
}

TEST(ProcessorLoad, EndsLongBeforeItsTimeWhenItIsAsked) {
    ProcessorLoad load;
    EXPECT_GT(load.begin(24h), 0U);
    load.end(); // the test would not end otherwise
    load.end();
}

TEST(ProcessorLoad, EndsByItselfWhenItsTimeIsOver) {
    if (!std::filesystem::exists("/proc/self/task")) GTEST_SKIP() << "this system does not list threads";
    const std::size_t before = threadCount();
    ProcessorLoad load;
    EXPECT_GT(load.begin(1ms), 0U);
    while (threadCount() > before) std::this_thread::yield(); // would not end otherwise
}

TEST(ProcessorLoad, BeginsAgain) {
    ProcessorLoad load;
    EXPECT_GT(load.begin(24h), 0U);
    EXPECT_GT(load.begin(24h), 0U);
    load.end();
    EXPECT_GT(load.begin(24h), 0U);
    waitForComputing(20ms);
}

} // namespace
} // namespace kelvinbar::processor_load_test
