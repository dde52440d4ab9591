#include "platform/Platform.h"
#include "platform/linux/AbsentController.h"
#include "smc/NativeMacSupport.h"
#include "smc/SMCBridge.h"
#include "smc/SMCConnection.h"

#include <array>
#include <cstddef>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using testing::IsEmpty;

class LinuxPlatform : public testing::Test {
  protected:
    void SetUp() override { useMachine(makePlatform()); }

    void TearDown() override { useMachine({}); }
};

TEST_F(LinuxPlatform, HasNoControllerAndNoRegistryFans) {
    EXPECT_EQ(*SMCBridge::status().find<bool>("available"), false);
    EXPECT_EQ(openSMC(), kernNotFound);
    EXPECT_THAT(SMCBridge::discoverKeys(), IsEmpty());
    EXPECT_THAT(SMCBridge::readSMCSuperIOFans(), IsEmpty());
}

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

TEST(AbsentController, FindsOpensAndCallsNothing) {
    AbsentSMCDriver driver;
    EXPECT_EQ(driver.findService("AppleSMC"), std::nullopt);
    const auto opened = driver.open(1);
    EXPECT_NE(opened.code, kernSuccess);
    EXPECT_EQ(opened.connection, 0U);
    std::array<std::byte, 80> block{};
    std::size_t size = block.size();
    EXPECT_NE(driver.callStructMethod(1, 2, block, block, size), kernSuccess);
}

TEST(AbsentController, BeginsNoWalk) {
    EXPECT_EQ(AbsentIORegistry().iterateRecursively("IOService"), nullptr);
}

} // namespace

} // namespace kelvinbar
