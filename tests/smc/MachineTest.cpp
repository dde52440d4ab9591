#include "sensors/Machine.h"

#include "smc/NativeMacSupport.h"
#include "smc/SMCBridge.h"
#include "smc/SMCConnection.h"
#include "tests/fakes/FakeMachine.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using fakes::FakeMachine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

TEST(Machine, TheConnectionToThePreviousMachineIsClosedThroughItsOwnDriver) {
    const FakeMachine first;
    ASSERT_EQ(openSMC(), kernSuccess);
    const FakeMachine second;
    EXPECT_THAT(first.driver->closed, ElementsAre(7U));
    EXPECT_THAT(second.driver->closed, IsEmpty());
}

TEST(Machine, TheNextMachineIsOpenedByItsOwnDriver) {
    const FakeMachine first;
    ASSERT_EQ(openSMC(), kernSuccess);
    const FakeMachine second;
    SMCParamBlock output;
    EXPECT_EQ(callSMC({}, output), kernInvalidArgument);
    EXPECT_EQ(openSMC(), kernSuccess);
    EXPECT_EQ(callSMC({}, output), kernSuccess);
    EXPECT_EQ(second.driver->openCount, 1);
    EXPECT_THAT(second.driver->calls, SizeIs(1));
    EXPECT_THAT(first.driver->calls, IsEmpty());
}

TEST(Machine, NothingIsClosedOnAMachineThatWasNeverOpened) {
    const FakeMachine first;
    const FakeMachine second;
    EXPECT_THAT(first.driver->closed, IsEmpty());
}

TEST(Machine, FansAndFactsOfThePreviousMachineAreForgotten) {
    const FakeMachine first;
    first.registry->add("IOService", "board", Dictionary{{"FAN1", 1450.0}});
    first.system->entries["hw.model"] = "First1,1\0"s;
    ASSERT_THAT(SMCBridge::readSMCSuperIOFans(), SizeIs(1));
    ASSERT_EQ(NativeMacSupport::sysctlString("hw.model"), "First1,1");
    const FakeMachine second;
    EXPECT_THAT(SMCBridge::readSMCSuperIOFans(), IsEmpty());
    EXPECT_EQ(NativeMacSupport::sysctlString("hw.model"), std::nullopt);
}

TEST(Machine, WithoutAMachineThereIsNothingToRead) {
    useMachine({});
    const std::vector<std::string> keys{"TC0P"};
    EXPECT_EQ(openSMC(), kernNotFound);
    EXPECT_THAT(SMCBridge::discoverKeys(), IsEmpty());
    EXPECT_THAT(SMCBridge::readCandidateKeys(keys), IsEmpty());
    EXPECT_THAT(SMCBridge::readSMCSuperIOFans(), IsEmpty());
    EXPECT_THAT(NativeMacSupport::readings(), IsEmpty());
    EXPECT_EQ(NativeMacSupport::sysctlString("hw.model"), std::nullopt);
    SMCBridge::close();
}

} // namespace

} // namespace kelvinbar
