#include "machines/linux/applesmc/KeySourceDriver.h"
#include "machines/replay/RecordedKeys.h"
#include "smc/SMCBridge.h"
#include "smc/SMCKeyText.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

RecordedKey recordedKey(std::string_view key, std::string_view type, std::vector<std::uint8_t> bytes) {
    return {packedSMCKey(key), packedSMCKey(type), std::move(bytes)};
}

KeySourceDriver driverOf(std::vector<RecordedKey> keys, bool isPresent = true) {
    return KeySourceDriver(std::make_unique<RecordedKeys>(std::move(keys), isPresent));
}

KeySourceDriver threeKeys() {
    return driverOf({recordedKey("TC0P", "sp78", {0x28, 0x80}), recordedKey("FNum", "ui8 ", {2}),
                     recordedKey("REV ", "ch8*", std::vector<std::uint8_t>(32, 'x'))});
}

struct Answer {
    ReturnCode code = kernSuccess;
    SMCParamBlock block;
    std::size_t size = 0;
};

SMCDriver::Connection openedConnection(SMCDriver& driver) {
    const auto service = driver.findService("AppleSMC");
    return service ? driver.open(*service).connection : 0;
}

Answer ask(SMCDriver& driver, const SMCParamBlock& question) {
    std::array<std::byte, sizeof(SMCParamBlock)> input{};
    std::array<std::byte, sizeof(SMCParamBlock)> output{};
    std::memcpy(input.data(), &question, sizeof(question));
    Answer answer;
    answer.size = output.size();
    answer.code = driver.callStructMethod(openedConnection(driver), 2, input, output, answer.size);
    std::memcpy(&answer.block, output.data(), sizeof(answer.block));
    return answer;
}

SMCParamBlock keyQuestion(SMCCommand command, std::string_view key, std::uint32_t size = 0) {
    SMCParamBlock question;
    question.command = static_cast<std::uint8_t>(command);
    question.key = packedSMCKey(key);
    question.dataSize = size;
    return question;
}

SMCParamBlock indexQuestion(std::uint32_t index) {
    SMCParamBlock question;
    question.command = static_cast<std::uint8_t>(SMCCommand::keyByIndex);
    question.data32 = index;
    return question;
}

/// `count` keys that differ, all printable; the catalogue names none of them.
std::vector<RecordedKey> manyKeys(std::size_t count) {
    std::vector<RecordedKey> keys;
    for (std::size_t number = 0; number < count; ++number) {
        const std::string digits = std::to_string(10000 + number);
        const std::string key = std::string(1, static_cast<char>('a' + number / 1000)).append(digits, 2);
        keys.push_back(recordedKey(key, "ui8 ", {1}));
    }
    return keys;
}

void useController(std::vector<RecordedKey> keys) {
    useMachine({.driver = std::make_shared<KeySourceDriver>(driverOf(std::move(keys))),
                .registry = std::make_shared<fakes::FakeIORegistry>(),
                .system = std::make_shared<fakes::FakeSystemInformation>(),
                .clock = std::make_shared<fakes::FakeMonotonicClock>()});
}

TEST(EmulatedReplay, IsFoundUnderTheControllersClassNameOnly) {
    KeySourceDriver driver = threeKeys();
    EXPECT_TRUE(driver.findService("AppleSMC"));
    EXPECT_FALSE(driver.findService("AppleSMCEmulator"));
    EXPECT_FALSE(driver.findService(""));
}

TEST(EmulatedReplay, IsNotFoundWithoutAService) {
    KeySourceDriver driver = driverOf({recordedKey("TC0P", "sp78", {1, 2})}, false);
    EXPECT_FALSE(driver.findService("AppleSMC"));
}

TEST(EmulatedReplay, OpensWithAHandle) {
    KeySourceDriver driver = threeKeys();
    const SMCDriver::OpenResult opened = driver.open(driver.findService("AppleSMC").value_or(0));
    EXPECT_EQ(opened.code, kernSuccess);
    EXPECT_NE(opened.connection, 0U);
}

TEST(EmulatedReplay, TellsSizeAndTypeOfAKey) {
    KeySourceDriver driver = threeKeys();
    const Answer answer = ask(driver, keyQuestion(SMCCommand::readKeyInfo, "TC0P"));
    EXPECT_EQ(answer.code, kernSuccess);
    EXPECT_EQ(answer.size, 80U);
    EXPECT_EQ(answer.block.result, 0);
    EXPECT_EQ(answer.block.dataSize, 2U);
    EXPECT_EQ(answer.block.dataType, packedSMCKey("sp78"));
    EXPECT_EQ(ask(driver, keyQuestion(SMCCommand::readKeyInfo, "REV ")).block.dataSize, 32U);
}

TEST(EmulatedReplay, ReadsTheBytesOfAKey) {
    KeySourceDriver driver = threeKeys();
    const Answer answer = ask(driver, keyQuestion(SMCCommand::readBytes, "TC0P", 2));
    EXPECT_EQ(answer.code, kernSuccess);
    EXPECT_EQ(answer.size, 80U);
    EXPECT_EQ(answer.block.result, 0);
    std::array<std::uint8_t, 32> expected{0x28, 0x80};
    EXPECT_EQ(answer.block.bytes, expected);
    expected.fill('x');
    EXPECT_EQ(ask(driver, keyQuestion(SMCCommand::readBytes, "REV ", 32)).block.bytes, expected);
}

TEST(EmulatedReplay, RefusesToReadWithAWrongSize) {
    KeySourceDriver driver = threeKeys();
    for (const std::uint32_t size : {0U, 1U, 3U, 32U, 33U, 0xFFFFFFFFU, 0x10002U}) {
        SCOPED_TRACE(size);
        const Answer answer = ask(driver, keyQuestion(SMCCommand::readBytes, "TC0P", size));
        EXPECT_EQ(answer.code, kernSuccess);
        EXPECT_NE(answer.block.result, 0);
        EXPECT_EQ(answer.block.bytes, (std::array<std::uint8_t, 32>{}));
    }
}

TEST(EmulatedReplay, RefusesUnknownKeys) {
    KeySourceDriver driver = threeKeys();
    for (const std::string_view key : {"TC1P", "tc0p", "FNu ", "    ", "#key"}) {
        SCOPED_TRACE(key);
        const Answer info = ask(driver, keyQuestion(SMCCommand::readKeyInfo, key));
        EXPECT_EQ(info.code, kernSuccess);
        EXPECT_NE(info.block.result, 0);
        EXPECT_NE(ask(driver, keyQuestion(SMCCommand::readBytes, key, 2)).block.result, 0);
    }
}

TEST(EmulatedReplay, ListsKeysInTheirOrder) {
    KeySourceDriver driver = threeKeys();
    const std::array<std::string_view, 3> keys{"TC0P", "FNum", "REV "};
    for (std::uint32_t index = 0; index < keys.size(); ++index) {
        const Answer answer = ask(driver, indexQuestion(index));
        EXPECT_EQ(answer.code, kernSuccess);
        EXPECT_EQ(answer.block.result, 0);
        EXPECT_EQ(answer.block.key, packedSMCKey(keys.at(index)));
    }
}

TEST(EmulatedReplay, RefusesIndicesPastTheEnd) {
    KeySourceDriver driver = threeKeys();
    for (const std::uint32_t index :
         {3U, 4U, 8192U, 0x80000000U, std::numeric_limits<std::uint32_t>::max()}) {
        SCOPED_TRACE(index);
        EXPECT_NE(ask(driver, indexQuestion(index)).block.result, 0);
    }
    KeySourceDriver empty = driverOf({});
    EXPECT_NE(ask(empty, indexQuestion(0)).block.result, 0);
}

TEST(EmulatedReplay, CountsItsKeys) {
    KeySourceDriver driver = threeKeys();
    const Answer info = ask(driver, keyQuestion(SMCCommand::readKeyInfo, "#KEY"));
    EXPECT_EQ(info.block.result, 0);
    EXPECT_EQ(info.block.dataSize, 4U);
    EXPECT_EQ(info.block.dataType, packedSMCKey("ui32"));
    const Answer bytes = ask(driver, keyQuestion(SMCCommand::readBytes, "#KEY", 4));
    EXPECT_EQ(bytes.block.result, 0);
    EXPECT_EQ(bytes.block.bytes, (std::array<std::uint8_t, 32>{0, 0, 0, 3}));
    EXPECT_NE(ask(driver, keyQuestion(SMCCommand::readBytes, "#KEY", 3)).block.result, 0);
}

TEST(EmulatedReplay, CountsItsKeysInBigEndianOrder) {
    KeySourceDriver driver = driverOf(manyKeys(0x1234));
    EXPECT_EQ(ask(driver, keyQuestion(SMCCommand::readBytes, "#KEY", 4)).block.bytes,
              (std::array<std::uint8_t, 32>{0, 0, 0x12, 0x34}));
}

TEST(EmulatedReplay, CountsItsKeysWhateverWasRecordedAsTheirNumber) {
    KeySourceDriver driver =
        driverOf({recordedKey("#KEY", "ui16", {0x12, 0x34}), recordedKey("TC0P", "sp78", {1, 2})});
    EXPECT_EQ(ask(driver, keyQuestion(SMCCommand::readKeyInfo, "#KEY")).block.dataSize, 4U);
    EXPECT_EQ(ask(driver, keyQuestion(SMCCommand::readBytes, "#KEY", 4)).block.bytes,
              (std::array<std::uint8_t, 32>{0, 0, 0, 2}));
    EXPECT_EQ(ask(driver, indexQuestion(0)).block.key, packedSMCKey("#KEY"));
    EXPECT_EQ(ask(driver, indexQuestion(1)).block.key, packedSMCKey("TC0P"));
}

TEST(EmulatedReplay, RefusesOtherCommands) {
    KeySourceDriver driver = threeKeys();
    for (const int command : {0, 1, 6, 7, 10, 255}) {
        SCOPED_TRACE(command);
        SMCParamBlock question = keyQuestion(SMCCommand::readBytes, "TC0P", 2);
        question.command = static_cast<std::uint8_t>(command);
        EXPECT_NE(ask(driver, question).block.result, 0);
    }
}

TEST(EmulatedReplay, FailsCallsThatADriverWouldNotTake) {
    KeySourceDriver driver = threeKeys();
    const SMCDriver::Connection connection = openedConnection(driver);
    std::vector<std::byte> right(80);
    std::vector<std::byte> small(79);
    std::vector<std::byte> large(81);
    std::size_t size = 80;
    EXPECT_NE(driver.callStructMethod(connection, 1, right, right, size), kernSuccess);
    EXPECT_NE(driver.callStructMethod(connection, 2, small, right, size), kernSuccess);
    EXPECT_NE(driver.callStructMethod(connection, 2, large, right, size), kernSuccess);
    EXPECT_NE(driver.callStructMethod(connection, 2, right, small, size), kernSuccess);
    EXPECT_NE(driver.callStructMethod(0, 2, right, right, size), kernSuccess);
    EXPECT_NE(driver.callStructMethod(connection + 1, 2, right, right, size), kernSuccess);
}

TEST(EmulatedReplay, ServesTheBridgeLikeARealController) {
    useController({recordedKey("TC0P", "sp78", {0x28, 0x80}), recordedKey("zzzz", "hex_", {0xAB})});
    EXPECT_EQ(SMCBridge::status().textOr("message", ""), "AppleSMC connected");
    EXPECT_EQ(SMCBridge::discoverKeys(), (std::vector<std::string>{"TC0P", "zzzz"}));
    const auto results = SMCBridge::readAllKeys();
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].textOr("value", ""), "40.50");
    EXPECT_EQ(results[1].textOr("type", ""), "hex_");
    EXPECT_EQ(results[1].textOr("raw", ""), "AB");
    SMCBridge::close();
    EXPECT_EQ(SMCBridge::discoverKeys().size(), 2U); // opens again
    useMachine({});
}

TEST(EmulatedReplay, Lists8192Keys) {
    useController(manyKeys(8192));
    const std::vector<std::string> keys = SMCBridge::discoverKeys();
    ASSERT_EQ(keys.size(), 8192U);
    EXPECT_EQ(keys.front(), "a000");
    EXPECT_EQ(keys.back(), "i191");
    useMachine({});
}

TEST(EmulatedReplay, Has8193KeysThatAreTooManyToList) {
    useController(manyKeys(8193));
    EXPECT_TRUE(SMCBridge::discoverKeys().empty());
    const std::vector<std::string> last{"i192"};
    EXPECT_EQ(SMCBridge::readCandidateKeys(last).size(), 1U);
    useMachine({});
}

/// A snapshot cannot have that many lines, but a dump of all keys of a controller can.
TEST(EmulatedReplay, GivesTheKnownKeysOfATextWithMoreKeysThanCanBeListed) {
    std::string text;
    for (std::size_t number = 0; number < 8192; ++number) {
        const std::string digits = std::to_string(10000 + number);
        text.append(1, static_cast<char>('a' + number / 1000))
            .append(digits.substr(2))
            .append("\tui8 \t\t\tRAW=01\n");
    }
    const std::string unlisted = "TC1H\tsp78\t\t\tRAW=2880\n"; // named by a rule alone
    EXPECT_TRUE(exportedReplay(text.substr(0, text.size() / 8192 * 8191) + unlisted).ends_with("RAW=2880"));
    EXPECT_EQ(exportedReplay(text + unlisted), std::string(exportedHead).append("0\n"));
    EXPECT_TRUE(exportedReplay(text + "TC0P\tsp78\t\t\tRAW=2880\n")
                    .ends_with("1\n\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"));
}

} // namespace

} // namespace kelvinbar
