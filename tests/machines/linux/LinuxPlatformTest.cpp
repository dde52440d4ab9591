#include "machines/Platform.h"
#include "smc/NativeMacSupport.h"
#include "tests/fakes/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::linux_platform_test {

namespace {

struct LinuxPlatform : testing::Test {
    fakes::RecordingLog log;
    Machine machine = makePlatform(log.log);
};

TEST_F(LinuxPlatform, KnowsTheFactsOfThisMachine) {
    const auto readings = NativeMacSupport(*machine.system).readings();
    EXPECT_THAT(readings, testing::Contains(testing::Field(&SMCReading::key, "NARC")));
    EXPECT_THAT(readings, testing::Contains(testing::Field(&SMCReading::key, "NCOR")));
    EXPECT_THAT(readings, testing::Each(testing::Field(&SMCReading::type, "native")));
}

TEST_F(LinuxPlatform, BuildsEveryPort) {
    EXPECT_NE(machine.source, nullptr);
    EXPECT_NE(machine.system, nullptr);
    EXPECT_NE(machine.clock, nullptr);
}

TEST_F(LinuxPlatform, ReadsItselfOncePerKey) {
    if (!machine.source->status().isAvailable) GTEST_SKIP() << "this machine has no sensors";
    const auto keys = machine.source->discoverKeys({});
    EXPECT_FALSE(keys.empty());
    EXPECT_LE(machine.source->readCandidateKeys(keys).size(), keys.size());
}

} // namespace
} // namespace kelvinbar::linux_platform_test
