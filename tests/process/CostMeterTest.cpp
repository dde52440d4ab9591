#include "process/CostMeter.h"

#include <chrono>
#include <ctime>
#include <optional>
#include <string_view>
#include <thread>

#include <gtest/gtest.h>

namespace kelvinbar::cost_meter_test {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view rollup = "55d0a5b1e000-7ffd3a5f2000 ---p 00000000 00:00 0          [rollup]\n"
                                    "Rss:               22000 kB\n"
                                    "Pss:                9000 kB\n"
                                    "Pss_Dirty:          5000 kB\n"
                                    "Shared_Clean:      15000 kB\n"
                                    "Private_Clean:      2000 kB\n"
                                    "Private_Dirty:      5000 kB\n";

/// Uses this much time of the processor.
void compute(std::chrono::duration<double> time) {
    const std::clock_t end = std::clock() + static_cast<std::clock_t>(time.count() * CLOCKS_PER_SEC);
    while (std::clock() < end) {
    }
}

TEST(CostMeter, CountsTheWaitsOfThreadsThatHaveEnded) {
    const CostMeter meter;
    std::thread([] {
        for (int wait = 0; wait < 10; ++wait) std::this_thread::sleep_for(1ms);
    }).join();
    EXPECT_GE(meter.cost().wakeUps, 10U);
}

TEST(CostMeter, CountsTheProcessorTimeSinceItsConstruction) {
    const CostMeter earlier;
    compute(100ms);
    const CostMeter later;
    compute(20ms);
    const ProcessCost cost = earlier.cost();
    EXPECT_GE(cost.cpuTime, 110ms); // the kernel's clocks may differ by some ticks
    EXPECT_GT(cost.cpuTime - later.cost().cpuTime, 90ms);
    EXPECT_GT(cost.time, 0s);
}

TEST(CostMeter, TellsTheMemoryWhereTheSystemDoes) {
    const auto memory = CostMeter().cost().memory;
    if (!memory) GTEST_SKIP() << "the system does not tell";
    EXPECT_GT(memory->withoutShared, 0U);
    EXPECT_GE(memory->resident, memory->withoutShared);
}

TEST(MemoryUse, WhatNoOtherProcessUsesIsPrivateWhetherWrittenOrNot) {
    EXPECT_EQ(memoryUseIn(rollup), (MemoryUse{.resident = 22000U * 1024, .withoutShared = 7000U * 1024}));
}

TEST(MemoryUse, IsUnknownIfASizeIsMissing) {
    EXPECT_EQ(memoryUseIn(""), std::nullopt);
    EXPECT_EQ(memoryUseIn(rollup.substr(0, rollup.find("Private_Dirty"))), std::nullopt);
    EXPECT_EQ(memoryUseIn("\nRss: 1 kB\nPrivate_Clean: 1 kB\nPrivate_Dirty: many kB\n"), std::nullopt);
}

} // namespace
} // namespace kelvinbar::cost_meter_test
