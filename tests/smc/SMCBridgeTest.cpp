#include "smc/SMCBridge.h"

#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/RecordingLog.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::smc_bridge_test {

namespace {

using fakes::FakeMachine;
using fakes::FakeSMCDriver;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const SourceStatus available{.isAvailable = true, .message = "AppleSMC connected"};
const SourceStatus unavailable{.isAvailable = false,
                               .message = "AppleSMC service not available. This app is intended for "
                                          "Hackintosh/macOS systems with SMC emulation."};

/// A four-character key for a number below 10000, different for each.
std::string numberedKey(std::uint32_t number) {
    const std::string digits = std::to_string(number);
    return std::string(4 - digits.size(), '0') + digits;
}

std::vector<std::string> keysOf(const std::vector<RawReading>& results) {
    std::vector<std::string> keys;
    keys.reserve(results.size());
    for (const RawReading& result : results) keys.push_back(result.key);
    return keys;
}

class SMCBridgeTest : public testing::Test {
  protected:
    FakeMachine machine;
    FakeSMCDriver& driver = *machine.driver;
    SMCBridge& bridge = *machine.bridge;

    [[nodiscard]] std::int64_t callCount(SMCCommand command) const {
        return std::ranges::count(machine.driver->calls, command, &FakeSMCDriver::Call::command);
    }

    [[nodiscard]] std::int64_t infoCallCount(std::string_view key) const {
        return std::ranges::count_if(machine.driver->calls, [&](const FakeSMCDriver::Call& call) {
            return call.command == SMCCommand::readKeyInfo && call.key == key;
        });
    }

    /// Makes every key readable, with one byte.
    void answerEveryKey() {
        driver.intercept = [](const SMCParamBlock& input, SMCParamBlock& output) {
            output = {};
            if (input.command == static_cast<std::uint8_t>(SMCCommand::readKeyInfo)) {
                output.dataSize = 1;
                output.dataType = packedSMCKey("ui8 ");
            }
            return std::optional<ReturnCode>();
        };
    }
};

// Status

TEST_F(SMCBridgeTest, TheStatusOfAnOpenedControllerIsAvailable) {
    EXPECT_EQ(bridge.status(), available);
    EXPECT_EQ(driver.openCount, 1);
}

TEST_F(SMCBridgeTest, TheStatusWithoutAServiceIsUnavailableAndTheNextOneSearchesAgain) {
    driver.hasService = false;
    EXPECT_EQ(bridge.status(), unavailable);
    EXPECT_EQ(bridge.status(), unavailable);
    EXPECT_THAT(driver.searchedClasses, ElementsAre("AppleSMC", "AppleSMC"));
    driver.hasService = true;
    EXPECT_EQ(bridge.status(), available);
}

TEST_F(SMCBridgeTest, TheStatusOfAControllerThatMayNotBeOpenedIsUnavailableWithTheSameMessage) {
    driver.openCode = 0xE00002C1;
    EXPECT_EQ(bridge.status(), unavailable);
}

TEST_F(SMCBridgeTest, TheStatusOfAnOpenConnectionIsAvailableWithoutASecondOpen) {
    bridge.status();
    driver.hasService = false;
    EXPECT_EQ(bridge.status(), available);
    EXPECT_EQ(driver.openCount, 1);
}

TEST_F(SMCBridgeTest, CloseClosesAndTheNextStatusOpensAFreshConnection) {
    bridge.status();
    bridge.close();
    EXPECT_THAT(driver.closed, ElementsAre(7U));
    EXPECT_EQ(bridge.status(), available);
    EXPECT_EQ(driver.openCount, 2);
}

TEST_F(SMCBridgeTest, ABridgeThatIsDestroyedWhileOpenClosesItsConnection) {
    {
        SMCBridge other(machine.driver, machine.registry, machine.clock);
        other.status();
    }
    EXPECT_EQ(driver.openCount, 1);
    EXPECT_THAT(driver.closed, ElementsAre(7U));
}

TEST_F(SMCBridgeTest, EveryOpenedConnectionIsClosedOnceHoweverOftenTheBridgeIsReopened) {
    {
        SMCBridge other(machine.driver, machine.registry, machine.clock);
        for (const SMCDriver::Connection connection : {11U, 12U, 13U}) {
            driver.openConnection = connection;
            other.status();
            other.close();
            other.close();
        }
        driver.openConnection = 14;
        other.status();
        other.status();
    }
    EXPECT_EQ(driver.openCount, 4);
    EXPECT_THAT(driver.closed, ElementsAre(11U, 12U, 13U, 14U));
}

TEST_F(SMCBridgeTest, ABridgeThatWasNeverOpenedOrIsClosedClosesNothingWhenDestroyed) {
    {
        const SMCBridge other(machine.driver, machine.registry, machine.clock);
    }
    EXPECT_THAT(driver.closed, IsEmpty());
    {
        SMCBridge other(machine.driver, machine.registry, machine.clock);
        other.status();
        other.close();
    }
    EXPECT_THAT(driver.closed, ElementsAre(7U));
}

// Discovery

TEST_F(SMCBridgeTest, DiscoveryDoesNotDependOnTheKeysOfOtherSources) {
    driver.addKeyCount(2).add("TC0P", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys({"TC0P"}), ElementsAre("#KEY", "TC0P"));
}

TEST_F(SMCBridgeTest, DiscoveryListsTheKeysInTheControllersOrder) {
    driver.addKeyCount(4).add("TC0P", "sp78", {1, 2}).add("B0Ct", "ui16", {1, 2}).add("VTT ", "flt ", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P", "B0Ct", "VTT "));
}

TEST_F(SMCBridgeTest, DiscoveryOpensTheConnectionByItself) {
    driver.addKeyCount(1);
    EXPECT_THAT(bridge.discoverKeys(), SizeIs(1));
    EXPECT_EQ(driver.openCount, 1);
}

TEST_F(SMCBridgeTest, DiscoveryReadsNothingOfTheListedKeys) {
    driver.addKeyCount(2).add("TC0P", "sp78", {1, 2});
    bridge.discoverKeys();
    EXPECT_EQ(callCount(SMCCommand::readKeyInfo), 1) << "the count only";
    EXPECT_EQ(callCount(SMCCommand::readBytes), 1);
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 2);
}

TEST_F(SMCBridgeTest, DiscoveryGoesOnlyAsFarAsTheCount) {
    driver.addKeyCount(2).add("TC0P", "sp78", {1, 2}).add("TC1P", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P"));
}

TEST_F(SMCBridgeTest, DiscoveryListsARepeatedKeyOnceWhereItCameFirst) {
    driver.addKeyCount(5)
        .add("TC0P", "sp78", {1, 2})
        .add("TC1P", "sp78", {1, 2})
        .add("TC0P", "sp78", {1, 2})
        .add("#KEY", "ui32", {0, 0, 0, 1});
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P", "TC1P"));
}

TEST_F(SMCBridgeTest, DiscoveryIsCaseSensitive) {
    driver.addKeyCount(3).add("TC0P", "sp78", {1, 2}).add("TC0p", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P", "TC0p"));
}

TEST_F(SMCBridgeTest, DiscoverySkipsIndexesThatFailAndGoesOn) {
    driver.addKeyCount(6)
        .add("TC0P", "sp78", {1, 2})
        .add("driv", "sp78", {1, 2})
        .add("cont", "sp78", {1, 2})
        .add("TC\x01P", "sp78", {1, 2})
        .add("TC1P", "sp78", {1, 2});
    driver.intercept = [](const SMCParamBlock& input, SMCParamBlock& output) -> std::optional<ReturnCode> {
        if (input.command != static_cast<std::uint8_t>(SMCCommand::keyByIndex)) return std::nullopt;
        if (input.data32 == 3) output.result = 0x84;
        return input.data32 == 2 ? std::optional<ReturnCode>(0xE00002D6) : std::nullopt;
    };
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P", "TC1P"));
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 6);
}

TEST_F(SMCBridgeTest, DiscoveryIsEmptyWithoutAConnection) {
    driver.addKeyCount(1);
    driver.hasService = false;
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty());
    driver.hasService = true;
    driver.openCode = 0xE00002C1;
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty());
    EXPECT_THAT(driver.calls, IsEmpty());
}

TEST_F(SMCBridgeTest, DiscoveryIsEmptyWhereTheCountIsZeroOrUnreadable) {
    driver.add("TC0P", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty()) << "no count";
    driver.addKeyCount(0);
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty()) << "a count of zero";
    driver.keys.back() = {.name = "#KEY", .type = "hex_", .bytes = {1, 2, 3, 4}};
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty()) << "a count in no byte order";
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 0);
}

TEST_F(SMCBridgeTest, DiscoveryFollowsALittleEndianCountOfAnotherType) {
    driver.add("#KEY", "ui16", {2, 0, 0, 0}).add("TC0P", "sp78", {1, 2}).add("TC1P", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), ElementsAre("#KEY", "TC0P"));
}

TEST_F(SMCBridgeTest, ACountOf8192IsDiscoveredToTheLastKey) {
    driver.addKeyCount(8192);
    driver.intercept = [](const SMCParamBlock& input, SMCParamBlock& output) {
        if (input.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex)) {
            output.result = 0;
            output.key = packedSMCKey(numberedKey(input.data32));
        }
        return std::optional<ReturnCode>();
    };
    const auto keys = bridge.discoverKeys();
    ASSERT_EQ(keys.size(), 8192U);
    EXPECT_EQ(keys.front(), "0000");
    EXPECT_EQ(keys.back(), "8191");
}

TEST_F(SMCBridgeTest, ACountOf8193DiscoversNothing) {
    driver.addKeyCount(8193).add("TC0P", "sp78", {1, 2});
    EXPECT_THAT(bridge.discoverKeys(), IsEmpty());
    EXPECT_THAT(bridge.readAllKeys(), IsEmpty());
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 0);
}

// Reading all keys

TEST_F(SMCBridgeTest, AllListedKeysAreReadInTheControllersOrder) {
    driver.addKeyCount(3).add("TC0P", "sp78", {0x28, 0x80}).add("TC1P", "ui8 ", {9});
    const auto results = bridge.readAllKeys();
    ASSERT_THAT(keysOf(results), ElementsAre("#KEY", "TC0P", "TC1P"));
    RawReading expected;
    expected.key = "TC0P";
    expected.type = "sp78";
    expected.value = "40.50";
    expected.numericValue = 40.5;
    expected.raw = "2880";
    expected.size = 2;
    EXPECT_EQ(results.at(1), expected);
}

TEST_F(SMCBridgeTest, ReadingAllKeysLeavesOutWhatCannotBeRead) {
    driver.addKeyCount(4).add("TC0P", "sp78", {1, 2}).add("TC1P", "sp78", {1, 2}).add("TC2P", "sp78", {1, 2});
    driver.keys.at(1).infoResult = 0x84;
    driver.keys.at(2).announcedSize = 33;
    EXPECT_THAT(keysOf(bridge.readAllKeys()), ElementsAre("#KEY", "TC2P"));
}

TEST_F(SMCBridgeTest, ReadingAllKeysTriesARepeatedKeyOnceEvenWhenItFailed) {
    driver.addKeyCount(4).add("TC0P", "sp78", {1, 2}).add("TC1P", "ui8 ", {1}).add("TC0P", "sp78", {1, 2});
    driver.keys.at(1).infoResult = 0x84;
    EXPECT_THAT(keysOf(bridge.readAllKeys()), ElementsAre("#KEY", "TC1P"));
    EXPECT_EQ(infoCallCount("TC0P"), 1);
}

TEST_F(SMCBridgeTest, ReadingAllKeysAcceptsACountOf8192) {
    driver.addKeyCount(8192).add("TC0P", "sp78", {1, 2});
    EXPECT_THAT(keysOf(bridge.readAllKeys()), ElementsAre("#KEY", "TC0P"));
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 8192);
}

TEST_F(SMCBridgeTest, ReadingAllKeysIsEmptyWithoutAConnection) {
    driver.addKeyCount(1);
    driver.hasService = false;
    EXPECT_THAT(bridge.readAllKeys(), IsEmpty());
}

// Candidates

TEST_F(SMCBridgeTest, CandidatesAreReadInTheOrderOfTheArgument) {
    driver.add("TC0P", "sp78", {0x28, 0x80}).add("VTT ", "ui8 ", {9}).add("#KEY", "ui32", {0, 0, 0, 3});
    const std::vector<std::string> keys{"VTT ", "#KEY", "TC0P"};
    const auto results = bridge.readCandidateKeys(keys);
    ASSERT_THAT(keysOf(results), ElementsAre("VTT ", "#KEY", "TC0P"));
    EXPECT_EQ(results.back().value, "40.50");
    EXPECT_EQ(callCount(SMCCommand::keyByIndex), 0);
}

TEST_F(SMCBridgeTest, ARepeatedCandidateIsReadOnceAndAnUnprintableOneSkipped) {
    driver.add("TC0P", "sp78", {1, 2}).add("TC1P", "sp78", {1, 2});
    const std::vector<std::string> keys{"TC0P", "TC0P", "ab", "", "TC0PP", "TC\tP", "TC1P", "TC0P"};
    EXPECT_THAT(keysOf(bridge.readCandidateKeys(keys)), ElementsAre("TC0P", "TC1P"));
    EXPECT_THAT(driver.calls, SizeIs(4));
}

TEST_F(SMCBridgeTest, ARepeatedCandidateIsNotTriedAgainAfterAFailure) {
    const std::vector<std::string> keys{"TC0P", "TC0P"};
    EXPECT_THAT(bridge.readCandidateKeys(keys), IsEmpty());
    EXPECT_EQ(infoCallCount("TC0P"), 1);
}

TEST_F(SMCBridgeTest, CandidatesThatTheControllerDoesNotHaveAreLeftOut) {
    driver.add("TC1P", "sp78", {1, 2}).add("TC2P", "sp78", {1, 2});
    driver.keys.back().announcedSize = 33;
    const std::vector<std::string> keys{"TC0P", "TC1P", "TC2P"};
    EXPECT_THAT(keysOf(bridge.readCandidateKeys(keys)), ElementsAre("TC1P"));
}

TEST_F(SMCBridgeTest, OnlyTheFirst1024CandidatesAreRead) {
    answerEveryKey();
    std::vector<std::string> keys(1500);
    std::ranges::generate(keys, [number = 0U]() mutable { return numberedKey(number++); });
    const auto results = bridge.readCandidateKeys(keys);
    ASSERT_THAT(results, SizeIs(1024));
    EXPECT_EQ(results.front().key, "0000");
    EXPECT_EQ(results.back().key, "1023");
    EXPECT_THAT(driver.calls, SizeIs(2048));
}

TEST_F(SMCBridgeTest, TheLogSaysOnceHowManyCandidatesAreLeftOut) {
    fakes::RecordingLog log;
    SMCBridge logging(machine.driver, machine.registry, machine.clock, &log.log);
    answerEveryKey();
    std::vector<std::string> keys(1500);
    std::ranges::generate(keys, [number = 0U]() mutable { return numberedKey(number++); });
    logging.readCandidateKeys(std::span(keys).first(1024));
    EXPECT_THAT(log.lines(), IsEmpty());
    logging.readCandidateKeys(keys);
    logging.readCandidateKeys(keys);
    EXPECT_THAT(log.lines(),
                ElementsAre("kelvinbar: 476 keys of the controller are left out: a pass reads 1024"));
}

TEST_F(SMCBridgeTest, SkippedCandidatesCountAmongTheFirst1024) {
    answerEveryKey();
    std::vector<std::string> keys(512, "ab");
    keys.insert(keys.end(), 500, "TC0P");
    std::generate_n(std::back_inserter(keys), 100, [number = 0U]() mutable { return numberedKey(number++); });
    const auto results = keysOf(bridge.readCandidateKeys(keys));
    ASSERT_THAT(results, SizeIs(13));
    EXPECT_EQ(results.front(), "TC0P");
    EXPECT_EQ(results.back(), "0011");
}

TEST_F(SMCBridgeTest, NoCandidatesHaveNoReadings) {
    EXPECT_THAT(bridge.readCandidateKeys({}), IsEmpty());
    EXPECT_THAT(driver.calls, IsEmpty());
}

TEST_F(SMCBridgeTest, ReadingCandidatesOpensTheConnectionByItself) {
    answerEveryKey();
    const std::vector<std::string> keys{"TC0P"};
    EXPECT_THAT(bridge.readCandidateKeys(keys), SizeIs(1));
    EXPECT_EQ(driver.openCount, 1);
    bridge.close();
    EXPECT_THAT(bridge.readCandidateKeys(keys), SizeIs(1));
    EXPECT_EQ(driver.openCount, 2);
}

TEST_F(SMCBridgeTest, NoCandidatesAreReadWithoutAConnection) {
    driver.add("TC0P", "sp78", {1, 2});
    driver.hasService = false;
    const std::vector<std::string> keys{"TC0P"};
    EXPECT_THAT(bridge.readCandidateKeys(keys), IsEmpty());
    EXPECT_THAT(driver.calls, IsEmpty());
}

// Registry fans

TEST_F(SMCBridgeTest, RegistryFansNeedNoConnection) {
    machine.registry->add("IOService", "board", Dictionary{{"FAN1", std::int64_t{1450}}});
    EXPECT_THAT(keysOf(bridge.readSMCSuperIOFans()), ElementsAre("FAN1"));
    EXPECT_THAT(driver.searchedClasses, IsEmpty());
    EXPECT_EQ(driver.openCount, 0);
}

} // namespace
} // namespace kelvinbar::smc_bridge_test
