// The real machine, on a Mac: what every Mac has.

#include "machines/Platform.h"
#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "tests/fakes/RecordingLog.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::mac_platform_test {

namespace {

class MacPlatform : public testing::Test {
  protected:
    fakes::RecordingLog log;
    Machine machine = makePlatform(log.log);
    IOKitRegistry registry;
    IOKitSMCDriver driver;
};

TEST_F(MacPlatform, KnowsItsModelProcessorsAndMemory) {
    EXPECT_GT(machine.system->systemBytes("hw.model").value_or("").size(), 1U);
    EXPECT_EQ(machine.system->systemBytes("hw.no_such_entry"), std::nullopt);
    EXPECT_GE(machine.system->activeProcessorCount(), 1);
    EXPECT_GE(machine.system->physicalMemory(), std::uint64_t{1} << 30U);
    EXPECT_GE(machine.system->thermalState(), 0);
    EXPECT_LE(machine.system->thermalState(), 3);
}

TEST_F(MacPlatform, ItsClockNeverRunsBackwards) {
    const auto before = machine.clock->now();
    EXPECT_GT(before.count(), 0);
    EXPECT_GE(machine.clock->now(), before);
}

TEST_F(MacPlatform, ItsRegistryHasEntriesWithClassAndName) {
    const auto walk = registry.iterateRecursively("IOService");
    ASSERT_NE(walk, nullptr);
    std::size_t count = 0;
    std::size_t withProperties = 0;
    while (const IORegistryEntry* const entry = walk->next()) {
        ++count;
        EXPECT_NE(entry->className(), "");
        const auto properties = entry->properties([](std::string_view) { return true; });
        if (properties && properties->begin() != properties->end()) ++withProperties;
    }
    EXPECT_GT(count, 20U);
    EXPECT_GT(withProperties, 10U);
}

TEST_F(MacPlatform, HasNoPlaneOfAnotherName) {
    EXPECT_EQ(registry.iterateRecursively("NoSuchPlane"), nullptr);
}

TEST_F(MacPlatform, AControllerIsOpenedAndClosedOrNotThere) {
    const auto service = driver.findService("AppleSMC");
    if (!service) GTEST_SKIP() << "a virtual machine has none";
    const auto opened = driver.open(*service);
    if (opened.code == kernSuccess) EXPECT_NE(opened.connection, 0U);
    if (opened.connection != 0) driver.close(opened.connection);
}

TEST_F(MacPlatform, ItsSourceListsWhatItCanRead) {
    if (!machine.source->status().isAvailable) GTEST_SKIP() << "a virtual machine has no controller";
    const auto keys = machine.source->discoverKeys({});
    EXPECT_FALSE(machine.source->readCandidateKeys(keys).empty());
    machine.source->close();
}

TEST_F(MacPlatform, HasNoServiceOfAnotherName) {
    EXPECT_EQ(driver.findService("NoSuchService"), std::nullopt);
}

} // namespace
} // namespace kelvinbar::mac_platform_test
