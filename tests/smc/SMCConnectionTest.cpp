#include "smc/SMCConnection.h"

#include "tests/fakes/FakeSMCDriver.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::smc_connection_test {

namespace {

using fakes::FakeSMCDriver;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr ReturnCode notPermitted = 0xE00002C1;
constexpr ReturnCode noResponse = 0xE00002D6;

using Wire = std::array<std::uint8_t, 80>;

Wire onTheWire(const SMCParamBlock& block) {
    Wire wire{};
    std::memcpy(wire.data(), &block, wire.size());
    return wire;
}

/// A block without zero bytes, to detect what is written to it.
SMCParamBlock scribbledBlock() {
    SMCParamBlock block;
    std::memset(static_cast<void*>(&block), 0xA5, sizeof(block));
    return block;
}

/// Makes calls with `command` return `code`. Does not affect others.
FakeSMCDriver::Intercept failingCommand(SMCCommand command, ReturnCode code) {
    return [=](const SMCParamBlock& input, SMCParamBlock&) {
        return input.command == static_cast<std::uint8_t>(command) ? std::optional(code) : std::nullopt;
    };
}

class SMCConnectionTest : public testing::Test {
  protected:
    const std::shared_ptr<FakeSMCDriver> ownedDriver = std::make_shared<FakeSMCDriver>();
    FakeSMCDriver& driver = *ownedDriver;
    SMCConnection connection{ownedDriver};

    /// Reads `key` into a scribbled block. Expects the code, and that the block is unchanged.
    void expectFailedRead(std::string_view key, ReturnCode expected) {
        SMCParamBlock block = scribbledBlock();
        EXPECT_EQ(connection.readKey(key, block), expected);
        EXPECT_EQ(onTheWire(block), onTheWire(scribbledBlock()));
    }

    std::vector<SMCCommand> calledCommands() {
        std::vector<SMCCommand> commands;
        commands.reserve(driver.calls.size());
        for (const FakeSMCDriver::Call& call : driver.calls) commands.push_back(call.command);
        return commands;
    }
};

// Opening and closing

TEST_F(SMCConnectionTest, OpensTheFirstServiceOfClassAppleSMC) {
    EXPECT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_THAT(driver.searchedClasses, ElementsAre("AppleSMC"));
    EXPECT_EQ(driver.openCount, 1);
    EXPECT_THAT(driver.closed, IsEmpty());
    EXPECT_THAT(driver.calls, IsEmpty());
}

TEST_F(SMCConnectionTest, OpeningAnOpenConnectionSucceedsWithoutASecondOpen) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(driver.openCount, 1);
    EXPECT_EQ(driver.searchedClasses.size(), 1U);
}

TEST_F(SMCConnectionTest, AMissingServiceIsNotFound) {
    driver.hasService = false;
    EXPECT_EQ(connection.openSMC(), kernNotFound);
    EXPECT_EQ(driver.openCount, 0);
    EXPECT_THAT(driver.closed, IsEmpty());
}

TEST_F(SMCConnectionTest, AFailedSearchIsNotRemembered) {
    driver.hasService = false;
    ASSERT_EQ(connection.openSMC(), 56U);
    ASSERT_EQ(connection.openSMC(), 56U);
    EXPECT_EQ(driver.searchedClasses.size(), 2U);
    driver.hasService = true;
    EXPECT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(driver.searchedClasses.size(), 3U);
}

TEST_F(SMCConnectionTest, TheCodeOfAFailedOpenIsPassedThrough) {
    driver.openCode = notPermitted;
    driver.openConnection = 0;
    EXPECT_EQ(connection.openSMC(), notPermitted);
    EXPECT_THAT(driver.closed, IsEmpty());
}

TEST_F(SMCConnectionTest, AFailedOpenThatReturnedAHandleClosesIt) {
    driver.openCode = notPermitted;
    driver.openConnection = 12;
    EXPECT_EQ(connection.openSMC(), notPermitted);
    EXPECT_THAT(driver.closed, ElementsAre(12U));
}

TEST_F(SMCConnectionTest, AFailedOpenLeavesTheConnectionClosed) {
    driver.openCode = notPermitted;
    driver.openConnection = 12;
    ASSERT_EQ(connection.openSMC(), notPermitted);
    SMCParamBlock output;
    EXPECT_EQ(connection.callSMC({}, output), kernInvalidArgument);
    connection.close();
    EXPECT_THAT(driver.closed, ElementsAre(12U)) << "closed twice";

    driver.openCode = kernSuccess;
    EXPECT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(driver.openCount, 2);
}

TEST_F(SMCConnectionTest, ClosingClosesTheOpenHandleOnce) {
    driver.openConnection = 21;
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    connection.close();
    connection.close();
    EXPECT_THAT(driver.closed, ElementsAre(21U));
}

TEST_F(SMCConnectionTest, ClosingAConnectionThatWasNeverOpenedDoesNothing) {
    connection.close();
    EXPECT_THAT(driver.closed, IsEmpty());
}

TEST_F(SMCConnectionTest, AfterCloseCallsAreInvalidUntilTheNextOpen) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    connection.close();
    SMCParamBlock output;
    EXPECT_EQ(connection.callSMC({}, output), 4U);
    EXPECT_THAT(driver.calls, IsEmpty());

    driver.openConnection = 22;
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(driver.openCount, 2);
    EXPECT_EQ(connection.callSMC({}, output), kernSuccess);
    connection.close();
    EXPECT_THAT(driver.closed, ElementsAre(7U, 22U));
}

TEST_F(SMCConnectionTest, DestructionClosesAnOpenConnection) {
    driver.openConnection = 31;
    {
        SMCConnection other(ownedDriver);
        ASSERT_EQ(other.openSMC(), kernSuccess);
        EXPECT_THAT(driver.closed, IsEmpty());
    }
    EXPECT_THAT(driver.closed, ElementsAre(31U));
}

TEST_F(SMCConnectionTest, DestructionClosesNothingThatIsClosedAlready) {
    {
        const SMCConnection neverOpened(ownedDriver);
    }
    EXPECT_THAT(driver.closed, IsEmpty());
    {
        SMCConnection other(ownedDriver);
        ASSERT_EQ(other.openSMC(), kernSuccess);
        other.close();
    }
    EXPECT_THAT(driver.closed, ElementsAre(7U));
}

// One call

/// A driver that writes no output and records its input.
class SilentDriver final : public SMCDriver {
  public:
    ReturnCode code = kernSuccess;
    std::optional<Service> openedService;
    Connection usedConnection = 0;
    std::uint32_t usedSelector = 0;
    std::vector<std::byte> inputBytes;
    std::vector<std::byte> outputBytes;
    std::size_t outputRoom = 0;

    std::optional<Service> findService(std::string_view /*className*/) override { return 41; }

    OpenResult open(Service service) override {
        openedService = service;
        return {.code = kernSuccess, .connection = 42};
    }

    ReturnCode callStructMethod(Connection connection, std::uint32_t selector,
                                std::span<const std::byte> input, std::span<std::byte> output,
                                std::size_t& outputSize) override {
        usedConnection = connection;
        usedSelector = selector;
        inputBytes.assign(input.begin(), input.end());
        outputBytes.assign(output.begin(), output.end());
        outputRoom = outputSize;
        return code;
    }

    void close(Connection /*connection*/) override {}
};

class SMCCall : public testing::Test {
  protected:
    std::shared_ptr<SilentDriver> driver = std::make_shared<SilentDriver>();
    SMCConnection connection{driver};
};

TEST_F(SMCCall, CallsMethodTwoOfTheOpenedConnectionWithEightyBytesEachWay) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    const SMCParamBlock input = scribbledBlock();
    SMCParamBlock output;
    EXPECT_EQ(connection.callSMC(input, output), kernSuccess);
    EXPECT_EQ(driver->openedService, 41U);
    EXPECT_EQ(driver->usedConnection, 42U);
    EXPECT_EQ(driver->usedSelector, 2U);
    EXPECT_EQ(driver->inputBytes, std::vector(80, std::byte{0xA5}));
    EXPECT_EQ(driver->outputBytes.size(), 80U);
    EXPECT_EQ(driver->outputRoom, 80U);
}

TEST_F(SMCCall, ZeroesTheOutputBeforeTheDriverSeesIt) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock output = scribbledBlock();
    EXPECT_EQ(connection.callSMC({}, output), kernSuccess);
    EXPECT_EQ(driver->outputBytes, std::vector(80, std::byte{0}));
    EXPECT_EQ(onTheWire(output), Wire{});
}

TEST_F(SMCCall, ZeroesTheOutputEvenWithoutAConnection) {
    SMCParamBlock output = scribbledBlock();
    EXPECT_EQ(connection.callSMC({}, output), 4U);
    EXPECT_EQ(onTheWire(output), Wire{});
    EXPECT_THAT(driver->inputBytes, IsEmpty());
}

TEST_F(SMCCall, PassesTheDriversCodeThrough) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const ReturnCode code : {ReturnCode{0}, ReturnCode{1}, ReturnCode{5}, noResponse, 0xFFFFFFFFU}) {
        SCOPED_TRACE(code);
        driver->code = code;
        SMCParamBlock output;
        EXPECT_EQ(connection.callSMC({}, output), code);
    }
}

TEST_F(SMCConnectionTest, ACallDoesNotLookAtTheControllersResult) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock input;
    input.command = static_cast<std::uint8_t>(SMCCommand::readKeyInfo);
    input.key = packedSMCKey("none");
    SMCParamBlock output;
    EXPECT_EQ(connection.callSMC(input, output), kernSuccess);
    EXPECT_EQ(output.result, 0x84);
}

TEST_F(SMCConnectionTest, AFailedCallLeavesTheConnectionOpen) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    driver.intercept = failingCommand(SMCCommand::readKeyInfo, noResponse);
    expectFailedRead("TC0P", noResponse);
    driver.intercept = nullptr;
    SMCParamBlock block;
    EXPECT_EQ(connection.readKey("TC0P", block), kernSuccess);
    EXPECT_EQ(driver.openCount, 1);
    EXPECT_THAT(driver.closed, IsEmpty());
}

// Reading a key

TEST_F(SMCConnectionTest, AKeyIsReadInTwoCallsInformationThenBytes) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock block;
    ASSERT_EQ(connection.readKey("TC0P", block), kernSuccess);
    EXPECT_THAT(calledCommands(), ElementsAre(SMCCommand::readKeyInfo, SMCCommand::readBytes));
    EXPECT_EQ(block.key, 0x54433050U);
    EXPECT_EQ(block.dataSize, 2U);
    EXPECT_EQ(block.dataType, 0x73703738U);
    EXPECT_EQ(block.bytes[0], 0x28);
    EXPECT_EQ(block.bytes[1], 0x80);
}

TEST_F(SMCConnectionTest, TheInformationCallCarriesOnlyKeyAndCommand) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock block = scribbledBlock();
    ASSERT_EQ(connection.readKey("TC0P", block), kernSuccess);
    Wire expected{};
    expected[0] = 0x50;
    expected[1] = 0x30;
    expected[2] = 0x43;
    expected[3] = 0x54;
    expected[42] = 9;
    EXPECT_EQ(onTheWire(driver.calls.at(0).input), expected);
}

TEST_F(SMCConnectionTest, TheReadCallCarriesKeySizeAndCommandButNotTheType) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    driver.keys.back().attributes = 0xD0;
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock block = scribbledBlock();
    ASSERT_EQ(connection.readKey("TC0P", block), kernSuccess);
    Wire expected{};
    expected[0] = 0x50;
    expected[1] = 0x30;
    expected[2] = 0x43;
    expected[3] = 0x54;
    expected[28] = 2;
    expected[42] = 5;
    EXPECT_EQ(onTheWire(driver.calls.at(1).input), expected);
}

TEST_F(SMCConnectionTest, TheDescriptionFromTheFirstCallReplacesThatOfTheSecond) {
    driver.intercept = [](const SMCParamBlock& input, SMCParamBlock& output) {
        output = {};
        if (input.command == static_cast<std::uint8_t>(SMCCommand::readKeyInfo)) {
            output.key = 0x11111111;
            output.dataSize = 3;
            output.dataType = packedSMCKey("ui16");
            output.dataAttributes = 0x84;
            output.padding37 = {0x71, 0x72, 0x73};
            output.bytes.fill(0x77);
        } else {
            std::memset(static_cast<void*>(&output), 0x99, sizeof(output));
            output.result = 0;
        }
        return std::optional<ReturnCode>();
    };
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock block;
    ASSERT_EQ(connection.readKey("TC0P", block), kernSuccess);

    SMCParamBlock expected;
    std::memset(static_cast<void*>(&expected), 0x99, sizeof(expected));
    expected.result = 0;
    expected.key = packedSMCKey("TC0P");
    expected.dataSize = 3;
    expected.dataType = packedSMCKey("ui16");
    expected.dataAttributes = 0x84;
    expected.padding37 = {0x71, 0x72, 0x73};
    EXPECT_EQ(onTheWire(block), onTheWire(expected));
}

TEST_F(SMCConnectionTest, AKeyThatIsNotPrintableIsInvalidWithoutAnyCall) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const std::string_view key : {"TC0", "", "TC0PP", "TC0\x1F", "\177C0P", "TC\u00C4"}) {
        SCOPED_TRACE(key);
        expectFailedRead(key, 4);
    }
    EXPECT_THAT(driver.calls, IsEmpty());
}

TEST_F(SMCConnectionTest, AKeyCannotBeReadOnAClosedConnection) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    expectFailedRead("TC0P", 4);
    EXPECT_THAT(driver.calls, IsEmpty());
    EXPECT_EQ(driver.openCount, 0) << "reading does not open";
}

TEST_F(SMCConnectionTest, AKeyThatTheControllerRefusesToDescribeFailsAfterTheFirstCall) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const int result : {1, 0x84, 0xFF}) {
        SCOPED_TRACE(result);
        driver.calls.clear();
        driver.keys.back().infoResult = static_cast<std::uint8_t>(result);
        expectFailedRead("TC0P", 5);
        EXPECT_EQ(driver.calls.size(), 1U);
    }
}

TEST_F(SMCConnectionTest, AKeyThatTheControllerRefusesToReadFailsAfterTheSecondCall) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    driver.keys.back().readResult = 0x85;
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    expectFailedRead("TC0P", 5);
    EXPECT_EQ(driver.calls.size(), 2U);
}

TEST_F(SMCConnectionTest, AKeyWhoseSizeIsZeroFailsAfterTheFirstCall) {
    driver.add("TC0P", "sp78", {});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    expectFailedRead("TC0P", 5);
    EXPECT_EQ(driver.calls.size(), 1U);
}

TEST_F(SMCConnectionTest, AKeyWhoseSizeIs33FailsAfterTheFirstCall) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const std::uint32_t size : {33U, 256U, 0x80000001U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(size);
        driver.calls.clear();
        driver.keys.back().announcedSize = size;
        expectFailedRead("TC0P", 5);
        EXPECT_EQ(driver.calls.size(), 1U);
    }
}

TEST_F(SMCConnectionTest, SizesFrom1To32AreRead) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (std::uint32_t size = 1; size <= 32; ++size) {
        SCOPED_TRACE(size);
        driver.keys.clear();
        driver.calls.clear();
        driver.add("TC0P", "ch8*", std::vector<std::uint8_t>(size, 0x41));
        SMCParamBlock block;
        EXPECT_EQ(connection.readKey("TC0P", block), kernSuccess);
        EXPECT_EQ(block.dataSize, size);
        EXPECT_EQ(std::ranges::count(block.bytes, 0x41), size);
        EXPECT_EQ(driver.calls.size(), 2U);
        EXPECT_EQ(driver.calls.back().input.dataSize, size);
    }
}

TEST_F(SMCConnectionTest, TheDriversCodeForEitherCallOfAReadIsPassedThrough) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    driver.intercept = failingCommand(SMCCommand::readKeyInfo, noResponse);
    expectFailedRead("TC0P", noResponse);
    EXPECT_EQ(driver.calls.size(), 1U);
    driver.intercept = failingCommand(SMCCommand::readBytes, notPermitted);
    expectFailedRead("TC0P", notPermitted);
    EXPECT_EQ(driver.calls.size(), 3U);
}

TEST_F(SMCConnectionTest, TheDriversCodeCountsBeforeTheControllersResult) {
    driver.add("TC0P", "sp78", {0x28, 0x80});
    driver.keys.back().infoResult = 0x84;
    driver.intercept = failingCommand(SMCCommand::readKeyInfo, noResponse);
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    expectFailedRead("TC0P", noResponse);
}

TEST_F(SMCConnectionTest, AKeyKeepsItsTrailingSpaceInTheCall) {
    driver.add("VTT ", "sp78", {1, 2});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    SMCParamBlock block;
    EXPECT_EQ(connection.readKey("VTT ", block), kernSuccess);
    EXPECT_EQ(driver.calls.front().input.key, 0x56545420U);
}

// Keys by index

TEST_F(SMCConnectionTest, AKeyIsListedByItsIndexInOneCall) {
    driver.add("TC0P", "sp78", {1, 2}).add("VTT ", "sp78", {1, 2});
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    std::string key;
    ASSERT_EQ(connection.readKeyByIndex(1, key), kernSuccess);
    EXPECT_EQ(key, "VTT ");
    EXPECT_THAT(calledCommands(), ElementsAre(SMCCommand::keyByIndex));
}

TEST_F(SMCConnectionTest, TheIndexCallCarriesOnlyIndexAndCommand) {
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    std::string key;
    EXPECT_EQ(connection.readKeyByIndex(0x01020304, key), 5U);
    Wire expected{};
    expected[42] = 8;
    expected[44] = 4;
    expected[45] = 3;
    expected[46] = 2;
    expected[47] = 1;
    EXPECT_EQ(onTheWire(driver.calls.at(0).input), expected);
}

TEST_F(SMCConnectionTest, AKeyThatCannotBeListedLeavesTheTextUntouched) {
    struct Case {
        std::string_view name;
        std::uint32_t key;
        std::uint8_t result;
        std::optional<ReturnCode> code;
        ReturnCode expected;
    };

    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const Case& failure : {
             Case{"the driver fails", 0x54433050, 0, noResponse, noResponse},
             Case{"the controller refuses", 0x54433050, 0xB8, std::nullopt, 5},
             Case{"a control character", 0x5443301F, 0, std::nullopt, 5},
             Case{"a zero byte", 0x54433000, 0, std::nullopt, 5},
             Case{"not UTF-8", 0xFFFE4142, 0, std::nullopt, 5},
             Case{"beyond ASCII", 0x5443C384, 0, std::nullopt, 5},
             Case{"nothing", 0, 0, std::nullopt, 5},
         }) {
        SCOPED_TRACE(failure.name);
        driver.intercept = [&](const SMCParamBlock&, SMCParamBlock& output) {
            output = {};
            output.key = failure.key;
            output.result = failure.result;
            return failure.code;
        };
        std::string key = "kept";
        EXPECT_EQ(connection.readKeyByIndex(0, key), failure.expected);
        EXPECT_EQ(key, "kept");
    }
}

TEST_F(SMCConnectionTest, NoKeyIsListedOnAClosedConnection) {
    driver.add("TC0P", "sp78", {1, 2});
    std::string key = "kept";
    EXPECT_EQ(connection.readKeyByIndex(0, key), 4U);
    EXPECT_EQ(key, "kept");
    EXPECT_THAT(driver.calls, IsEmpty());
}

// The number of keys

TEST_F(SMCConnectionTest, TheKeyCountIsReadByItsTypeOrByTheByteOrderInWhichItFits) {
    struct Case {
        std::string_view name;
        std::string type;
        std::vector<std::uint8_t> bytes;
        std::uint32_t expected;
    };

    ASSERT_EQ(connection.openSMC(), kernSuccess);
    for (const Case& count : {
             Case{"ui32", "ui32", {0x00, 0x00, 0x04, 0xD2}, 1234},
             Case{"ui32, all 32 bits", "ui32", {0x01, 0x02, 0x03, 0x04}, 0x01020304},
             Case{"ui32, highest", "ui32", {0xFF, 0xFF, 0xFF, 0xFF}, 0xFFFFFFFF},
             Case{"ui32 is never swapped", "ui32", {0xD2, 0x04, 0x00, 0x00}, 0xD2040000},
             Case{"ui32 of zero", "ui32", {0, 0, 0, 0}, 0},
             Case{"ui32 of more bytes", "ui32", {0, 0, 0, 9, 1, 1}, 9},
             Case{"ui32 of three bytes", "ui32", {0, 0, 9}, 0},
             Case{"other, big-endian", "ui16", {0x00, 0x00, 0x04, 0xD2}, 1234},
             Case{"other, little-endian", "ui16", {0xD2, 0x04, 0x00, 0x00}, 1234},
             Case{"other, does not fit in 16 bits", "ui16", {1, 2, 3, 4}, 0},
             Case{"other, fits in neither order", "ui16", {0, 1, 1, 0}, 0},
             Case{"other, zero", "ui16", {0, 0, 0, 0}, 0},
             Case{"other, highest big-endian", "hex_", {0, 0, 0xFF, 0xFF}, 65535},
             Case{"other, highest little-endian", "hex_", {0xFF, 0xFF, 0, 0}, 65535},
             Case{"other, one low byte", "hex_", {0, 0, 0, 1}, 1},
             Case{"other, one high byte", "hex_", {0, 1, 0, 0}, 256},
             Case{"other, three bytes", "ui16", {0xD2, 4, 0}, 0},
             Case{"other, one byte", "ui8 ", {9}, 0},
             Case{"a type cut short", "ui3", {0xD2, 0x04, 0x00, 0x00}, 1234},
             Case{"no type", "", {0xD2, 0x04, 0x00, 0x00}, 1234},
             Case{"other, more bytes", "hex_", {0x00, 0x00, 0x04, 0xD2, 7, 7}, 1234},
         }) {
        SCOPED_TRACE(count.name);
        driver.keys.clear();
        driver.add("#KEY", count.type, count.bytes);
        EXPECT_EQ(connection.readKeyCount(), count.expected);
    }
}

TEST_F(SMCConnectionTest, TheKeyCountIsZeroWhereItCannotBeRead) {
    EXPECT_EQ(connection.readKeyCount(), 0U) << "closed";
    ASSERT_EQ(connection.openSMC(), kernSuccess);
    EXPECT_EQ(connection.readKeyCount(), 0U) << "no such key";
    driver.addKeyCount(12);
    ASSERT_EQ(connection.readKeyCount(), 12U);
    driver.intercept = failingCommand(SMCCommand::readBytes, noResponse);
    EXPECT_EQ(connection.readKeyCount(), 0U) << "the driver fails";
    driver.intercept = nullptr;
    driver.keys.front().readResult = 1;
    EXPECT_EQ(connection.readKeyCount(), 0U) << "the controller refuses";
}

TEST_F(SMCConnectionTest, TheCodesHaveTheSystemsValues) {
    EXPECT_EQ(kernSuccess, 0U);
    EXPECT_EQ(kernInvalidArgument, 4U);
    EXPECT_EQ(kernFailure, 5U);
    EXPECT_EQ(kernNotFound, 56U);
}

} // namespace
} // namespace kelvinbar::smc_connection_test
