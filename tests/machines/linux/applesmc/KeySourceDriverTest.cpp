#include "machines/linux/applesmc/KeySourceDriver.h"

#include "smc/SMCKeyText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::key_source_driver_test {

namespace {

/// Keys set by a test; counts how often their number is requested.
class FakeKeys final : public SMCKeySource {
  public:
    struct Key {
        std::uint32_t code = 0;
        KeyInfo info;
        std::vector<std::uint8_t> bytes;
        std::uint8_t result = smcresult::success;
    };

    void add(std::string_view key, std::string_view type, std::vector<std::uint8_t> bytes) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        keys.push_back(
            {packedSMCKey(key), {.dataSize = size, .dataType = packedSMCKey(type)}, std::move(bytes)});
    }

    bool isPresent() override { return present; }

    std::size_t keyCount() override {
        ++countQuestions;
        return announcedCount.value_or(keys.size());
    }

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override {
        return index < keys.size() ? std::optional(keys[index].code) : std::nullopt;
    }

    std::optional<KeyInfo> keyInfo(std::uint32_t code) override {
        const auto key = std::ranges::find(keys, code, &Key::code);
        return key == keys.end() ? std::nullopt : std::optional(key->info);
    }

    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override {
        ++readCount;
        const auto key = std::ranges::find(keys, code, &Key::code);
        if (key == keys.end()) return smcresult::keyNotFound;
        wereBytesZero = wereBytesZero && std::ranges::count(bytes, 0) == std::ssize(bytes);
        std::ranges::copy(key->bytes, bytes.begin());
        return key->result;
    }

    bool present = true;
    std::vector<Key> keys;
    std::optional<std::size_t> announcedCount;
    int countQuestions = 0;
    int readCount = 0;
    bool wereBytesZero = true;
};

class KeySourceDriverTest : public testing::Test {
  protected:
    KeySourceDriverTest() {
        source.add("TC0P", "sp78", {0x28, 0x80});
        source.add("FNum", "ui8 ", {2});
        source.add("REV ", "ch8*", std::vector<std::uint8_t>(32, 'x'));
    }

    SMCDriver::Connection connection() {
        const auto service = driver.findService("AppleSMC");
        return service ? driver.open(*service).connection : 0;
    }

    SMCParamBlock ask(const SMCParamBlock& question) {
        std::array<std::byte, sizeof(SMCParamBlock)> input{};
        std::array<std::byte, sizeof(SMCParamBlock)> output{};
        std::memcpy(input.data(), &question, sizeof(question));
        std::size_t size = output.size();
        EXPECT_EQ(driver.callStructMethod(connection(), 2, input, output, size), kernSuccess);
        EXPECT_EQ(size, sizeof(SMCParamBlock));
        SMCParamBlock answer;
        std::memcpy(&answer, output.data(), sizeof(answer));
        return answer;
    }

    SMCParamBlock askAtIndex(std::uint32_t index) {
        SMCParamBlock question;
        question.command = static_cast<std::uint8_t>(SMCCommand::keyByIndex);
        question.data32 = index;
        return ask(question);
    }

    SMCParamBlock askInfo(std::string_view key) {
        SMCParamBlock question;
        question.command = static_cast<std::uint8_t>(SMCCommand::readKeyInfo);
        question.key = packedSMCKey(key);
        return ask(question);
    }

    SMCParamBlock askBytes(std::string_view key, std::uint32_t size) {
        SMCParamBlock question;
        question.command = static_cast<std::uint8_t>(SMCCommand::readBytes);
        question.key = packedSMCKey(key);
        question.dataSize = size;
        return ask(question);
    }

    std::unique_ptr<FakeKeys> owned = std::make_unique<FakeKeys>();
    FakeKeys& source = *owned;
    KeySourceDriver driver{std::move(owned)};
};

TEST_F(KeySourceDriverTest, IsFoundUnderTheControllersClassNameOnly) {
    EXPECT_TRUE(driver.findService("AppleSMC"));
    for (const std::string_view name : {"", "AppleSMC2", "applesmc", "IOService"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(driver.findService(name));
    }
}

TEST_F(KeySourceDriverTest, IsFoundOnlyWhileItsSourceIsPresent) {
    source.present = false;
    EXPECT_FALSE(driver.findService("AppleSMC"));
    source.present = true;
    EXPECT_TRUE(driver.findService("AppleSMC"));
}

TEST_F(KeySourceDriverTest, OpensWithAConnection) {
    const SMCDriver::OpenResult opened = driver.open(driver.findService("AppleSMC").value_or(0));
    EXPECT_EQ(opened.code, kernSuccess);
    EXPECT_NE(opened.connection, 0U);
}

TEST_F(KeySourceDriverTest, GivesTheKeyAtAnIndex) {
    for (const auto& [index, key] : {std::pair{0U, "TC0P"}, {1U, "FNum"}, {2U, "REV "}}) {
        SCOPED_TRACE(key);
        const SMCParamBlock answer = askAtIndex(index);
        EXPECT_EQ(answer.result, 0);
        EXPECT_EQ(answer.key, packedSMCKey(key));
    }
}

TEST_F(KeySourceDriverTest, RefusesAnIndexPastTheLastKey) {
    for (const std::uint32_t index : {3U, 4U, 0x80000000U, std::numeric_limits<std::uint32_t>::max()}) {
        SCOPED_TRACE(index);
        const SMCParamBlock answer = askAtIndex(index);
        EXPECT_EQ(answer.result, 0xB8);
        EXPECT_EQ(answer.key, 0U);
    }
}

TEST_F(KeySourceDriverTest, TellsTheSizeAndTypeOfAKey) {
    const SMCParamBlock temperature = askInfo("TC0P");
    EXPECT_EQ(temperature.result, 0);
    EXPECT_EQ(temperature.dataSize, 2U);
    EXPECT_EQ(temperature.dataType, packedSMCKey("sp78"));
    const SMCParamBlock text = askInfo("REV ");
    EXPECT_EQ(text.dataSize, 32U);
    EXPECT_EQ(text.dataType, packedSMCKey("ch8*"));
}

TEST_F(KeySourceDriverTest, ReadsTheBytesOfAKeyIntoAnEmptyField) {
    const SMCParamBlock temperature = askBytes("TC0P", 2);
    EXPECT_EQ(temperature.result, 0);
    EXPECT_EQ(temperature.bytes, (SMCBytes{0x28, 0x80}));
    SMCBytes text{};
    text.fill('x');
    EXPECT_EQ(askBytes("REV ", 32).bytes, text);
    EXPECT_EQ(askBytes("FNum", 1).bytes, SMCBytes{2});
    EXPECT_EQ(source.readCount, 3);
    EXPECT_TRUE(source.wereBytesZero);
}

TEST_F(KeySourceDriverTest, RefusesKeysThatTheSourceDoesNotHave) {
    for (const std::string_view key : {"TC1P", "tc0p", "    ", "#KEX"}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(askInfo(key).result, 0x84);
        EXPECT_EQ(askInfo(key).dataSize, 0U);
        EXPECT_EQ(askBytes(key, 2).result, 0x84);
    }
    EXPECT_EQ(source.readCount, 0);
}

TEST_F(KeySourceDriverTest, RefusesToReadWithAnotherSizeThanTheKeysWithoutAskingTheSource) {
    for (const std::uint32_t size : {0U, 1U, 3U, 32U, 0x10002U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(size);
        const SMCParamBlock answer = askBytes("TC0P", size);
        EXPECT_EQ(answer.result, 0x87);
        EXPECT_EQ(answer.bytes, SMCBytes{});
    }
    EXPECT_EQ(source.readCount, 0);
}

TEST_F(KeySourceDriverTest, PassesTheSourcesRefusalOn) {
    for (const std::uint8_t result :
         {smcresult::keyNotReadable, smcresult::keyNotFound, std::uint8_t{1}, std::uint8_t{0xFF}}) {
        SCOPED_TRACE(static_cast<int>(result));
        source.keys[0].result = result;
        EXPECT_EQ(askBytes("TC0P", 2).result, result);
    }
    source.keys[0].result = smcresult::success;
    EXPECT_EQ(askBytes("TC0P", 2).result, 0);
}

TEST_F(KeySourceDriverTest, RefusesCommandsThatItDoesNotKnow) {
    for (int command = 0; command <= 255; ++command) {
        if (command == 5 || command == 8 || command == 9) continue;
        SCOPED_TRACE(command);
        SMCParamBlock question;
        question.command = static_cast<std::uint8_t>(command);
        question.key = packedSMCKey("TC0P");
        question.dataSize = 2;
        const SMCParamBlock answer = ask(question);
        EXPECT_EQ(answer.result, 0x82);
        EXPECT_EQ(answer.bytes, SMCBytes{});
    }
    EXPECT_EQ(source.readCount, 0);
}

// The number of keys

TEST_F(KeySourceDriverTest, TellsTheNumberOfKeysAsFourBytesBigEndian) {
    EXPECT_EQ(askInfo("#KEY").result, 0);
    EXPECT_EQ(askInfo("#KEY").dataSize, 4U);
    EXPECT_EQ(askInfo("#KEY").dataType, packedSMCKey("ui32"));
    EXPECT_EQ(askBytes("#KEY", 4).bytes, (SMCBytes{0, 0, 0, 3}));
    source.announcedCount = 0x01020304;
    EXPECT_EQ(askBytes("#KEY", 4).bytes, (SMCBytes{1, 2, 3, 4}));
    source.announcedCount = 0;
    EXPECT_EQ(askBytes("#KEY", 4).bytes, SMCBytes{});
}

TEST_F(KeySourceDriverTest, TellsTheNumberOfItsKeysEvenWhenOneOfThemHasThatName) {
    source.add("#KEY", "ui32", {0, 0, 9, 9});
    EXPECT_EQ(askBytes("#KEY", 4).bytes, (SMCBytes{0, 0, 0, 4}));
    EXPECT_EQ(source.readCount, 0);
}

TEST_F(KeySourceDriverTest, AsksForTheNumberOfKeysEachTimeItsBytesAreReadAndNoOtherTime) {
    static_cast<void>(askInfo("#KEY"));
    static_cast<void>(askAtIndex(0));
    static_cast<void>(askInfo("TC0P"));
    static_cast<void>(askBytes("TC0P", 2));
    EXPECT_EQ(source.countQuestions, 0);
    static_cast<void>(askBytes("#KEY", 4));
    EXPECT_EQ(source.countQuestions, 1);
    static_cast<void>(askBytes("#KEY", 4));
    EXPECT_EQ(source.countQuestions, 2);
}

TEST_F(KeySourceDriverTest, RefusesToReadTheNumberOfKeysWithAnotherSize) {
    for (const std::uint32_t size : {0U, 3U, 5U, 32U}) {
        SCOPED_TRACE(size);
        EXPECT_EQ(askBytes("#KEY", size).result, 0x87);
    }
    EXPECT_EQ(source.countQuestions, 0);
}

// Invalid calls

TEST_F(KeySourceDriverTest, FailsCallsThatADriverWouldNotTakeAndLeavesTheirOutputAlone) {
    SMCParamBlock question;
    question.command = static_cast<std::uint8_t>(SMCCommand::readKeyInfo);
    question.key = packedSMCKey("TC0P");
    std::array<std::byte, 96> input{};
    std::memcpy(input.data(), &question, sizeof(question));
    const SMCDriver::Connection opened = connection();

    struct Call {
        std::string_view what;
        SMCDriver::Connection connection;
        std::uint32_t selector;
        std::size_t inputSize;
        std::size_t outputSize;
    };

    for (const Call& call : {Call{"no connection", 0, 2, 80, 80},
                             {"another connection", opened + 1, 2, 80, 80},
                             {"selector 0", opened, 0, 80, 80},
                             {"selector 1", opened, 1, 80, 80},
                             {"selector 3", opened, 3, 80, 80},
                             {"no input", opened, 2, 0, 80},
                             {"short input", opened, 2, 79, 80},
                             {"long input", opened, 2, 81, 80},
                             {"no output", opened, 2, 80, 0},
                             {"short output", opened, 2, 80, 79},
                             {"long output", opened, 2, 80, 81}}) {
        SCOPED_TRACE(call.what);
        std::array<std::byte, 96> output{};
        output.fill(std::byte{0xAA});
        std::size_t size = call.outputSize;
        EXPECT_NE(driver.callStructMethod(call.connection, call.selector,
                                          std::span(input).first(call.inputSize),
                                          std::span(output).first(call.outputSize), size),
                  kernSuccess);
        EXPECT_EQ(std::ranges::count(output, std::byte{0xAA}), 96);
    }
}

TEST_F(KeySourceDriverTest, AnswersIntoTheBufferOfTheQuestion) {
    SMCParamBlock question;
    question.command = static_cast<std::uint8_t>(SMCCommand::readKeyInfo);
    question.key = packedSMCKey("TC0P");
    std::array<std::byte, sizeof(SMCParamBlock)> buffer{};
    std::memcpy(buffer.data(), &question, sizeof(question));
    std::size_t size = buffer.size();
    ASSERT_EQ(driver.callStructMethod(connection(), 2, buffer, buffer, size), kernSuccess);
    SMCParamBlock answer;
    std::memcpy(&answer, buffer.data(), sizeof(answer));
    EXPECT_EQ(answer.dataSize, 2U);
}

} // namespace
} // namespace kelvinbar::key_source_driver_test
