#include "process/ProgramCost.h"

#include <chrono>
#include <optional>

#include <gtest/gtest.h>

namespace kelvinbar::program_cost_test {

namespace {

using namespace std::chrono_literals;

TEST(ProgramCost, IsThatOfAMinute) {
    const ProgramCost cost = programCost({.time = 120s, .cpuTime = 3s, .wakeUps = 50, .memory = {}});
    EXPECT_EQ(cost.measuredTime, 120);
    EXPECT_EQ(cost.cpuTimePerMinute, 1.5);
    EXPECT_EQ(cost.wakeUpsPerMinute, 25);
    EXPECT_EQ(cost.accessesOfLastPass, std::nullopt);
}

TEST(ProgramCost, OfAShortRunIsThatOfOneRunAMinute) {
    const ProgramCost cost = programCost({.time = 10ms, .cpuTime = 9ms, .wakeUps = 4, .memory = {}});
    EXPECT_EQ(cost.measuredTime, 0.01);
    EXPECT_EQ(cost.cpuTimePerMinute, 0.009);
    EXPECT_EQ(cost.wakeUpsPerMinute, 4);
}

TEST(ProgramCost, HasMemoryWhereTheSystemTells) {
    const ProcessCost measured{.time = 60s, .cpuTime = 1s, .wakeUps = 1, .memory = MemoryUse{9000, 4000}};
    EXPECT_EQ(programCost(measured).residentMemory, 9000U);
    EXPECT_EQ(programCost(measured).privateMemory, 4000U);
    EXPECT_EQ(programCost({.time = 60s, .cpuTime = 1s, .wakeUps = 1, .memory = {}}).residentMemory,
              std::nullopt);
}

} // namespace
} // namespace kelvinbar::program_cost_test
