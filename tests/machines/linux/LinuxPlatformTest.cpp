#include "machines/Platform.h"
#include "smc/NativeMacSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

class LinuxPlatform : public testing::Test {
  protected:
    void SetUp() override { useMachine(makePlatform()); }

    void TearDown() override { useMachine({}); }
};

TEST_F(LinuxPlatform, GivesNativeReadingsOfThisMachine) {
    const auto readings = NativeMacSupport::readings();
    EXPECT_THAT(readings, testing::Contains(testing::Field(&SMCReading::key, "NARC")));
    EXPECT_THAT(readings, testing::Contains(testing::Field(&SMCReading::key, "NTHR")));
    EXPECT_THAT(readings, testing::Each(testing::Field(&SMCReading::type, "native")));
}

TEST_F(LinuxPlatform, BuildsEveryPort) {
    const Machine machine = makePlatform();
    EXPECT_NE(machine.driver, nullptr);
    EXPECT_NE(machine.registry, nullptr);
    EXPECT_NE(machine.system, nullptr);
    EXPECT_NE(machine.clock, nullptr);
}

} // namespace

} // namespace kelvinbar
