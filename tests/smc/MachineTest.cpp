#include "sensors/Machine.h"

#include "smc/NativeMacSupport.h"
#include "smc/SMCBridge.h"
#include "tests/fakes/FakeMachine.h"

#include <cstdint>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::machine_test {

namespace {

using fakes::FakeMachine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::string_literals;

TEST(Machine, TwoMachinesAreOpenedAndClosedEachThroughItsOwnDriver) {
    const FakeMachine first;
    const FakeMachine second;
    second.driver->openConnection = 8;
    ASSERT_TRUE(first.machine().source->status().isAvailable);
    EXPECT_EQ(second.driver->openCount, 0);
    ASSERT_TRUE(second.machine().source->status().isAvailable);

    first.machine().source->close();
    EXPECT_THAT(first.driver->closed, ElementsAre(7U));
    EXPECT_THAT(second.driver->closed, IsEmpty());
    second.machine().source->close();
    EXPECT_THAT(second.driver->closed, ElementsAre(8U));
}

TEST(Machine, FansAndFactsOfOneMachineAreNotThoseOfAnother) {
    const FakeMachine first;
    first.registry->add("IOService", "board", Dictionary{{"FAN1", 1450.0}});
    first.system->entries["hw.model"] = "First1,1\0"s;
    const FakeMachine second;
    EXPECT_THAT(first.machine().source->readSMCSuperIOFans(), SizeIs(1));
    EXPECT_EQ(NativeMacSupport(*first.machine().system).sysctlString("hw.model"), "First1,1");
    EXPECT_THAT(second.machine().source->readSMCSuperIOFans(), IsEmpty());
    EXPECT_EQ(NativeMacSupport(*second.machine().system).sysctlString("hw.model"), std::nullopt);
}

TEST(Machine, TheLastCopyOfAMachineClosesItsConnection) {
    FakeMachine fake;
    Machine machine = fake.machine();
    fake.bridge.reset();
    ASSERT_TRUE(machine.source->status().isAvailable);
    Machine copy = machine;
    machine = {};
    EXPECT_THAT(fake.driver->closed, IsEmpty());
    copy = {};
    EXPECT_THAT(fake.driver->closed, ElementsAre(7U));
}

} // namespace
} // namespace kelvinbar::machine_test
