#include "machines/linux/applesmc/AppleSMCKeys.h"

#include "smc/SMCKeyText.h"
#include "tests/machines/linux/applesmc/FakeAppleSMC.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::apple_smc_keys_test {

namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class AppleSMCKeysTest : public testing::Test {
  protected:
    AppleSMCKeysTest() {
        controller.add("#KEY", "ui32", {0, 0, 0, 4});
        controller.add("FS! ", "ui16", {0x12, 0x34});
        controller.add("TC0P", "sp78", {0x28, 0x80});
        controller.add("TC1P", "sp78", {0x55, 0x66});
    }

    [[nodiscard]] std::vector<std::string> listed(std::size_t count) {
        std::vector<std::string> names;
        for (std::uint32_t index = 0; index < count; ++index) {
            const auto code = keys.keyAtIndex(index);
            names.push_back(code ? fourCharString(*code) : "(none)");
        }
        return names;
    }

    /// The bytes of a key; nothing on failure, after checking that no byte was stored.
    std::optional<SMCBytes> read(std::string_view name) {
        SMCBytes bytes{};
        if (keys.readBytes(packedSMCKey(name), bytes) == smcresult::success) return bytes;
        EXPECT_EQ(bytes, SMCBytes{});
        return std::nullopt;
    }

    std::optional<SMCKeySource::KeyInfo> info(std::string_view name) {
        return keys.keyInfo(packedSMCKey(name));
    }

    /// Makes another program select the key at `index` before the call that is `calls` calls away; 1 is the
    /// next one.
    void disturbOnce(int calls, std::uint32_t index) {
        controller.beforeCall = [this, at = controller.callCount + calls, index](std::string_view) {
            if (controller.callCount == at) controller.selected = index;
        };
    }

    /// Makes another program select the key at `index` before each call.
    void disturbAlways(std::uint32_t index) {
        controller.beforeCall = [this, index](std::string_view call) {
            if (call != "select") controller.selected = index;
        };
    }

    void expectReleased() const {
        EXPECT_FALSE(controller.isLocked);
        EXPECT_EQ(controller.unlockCount, controller.lockCount);
    }

    fakes::FakeAppleSMC controller;
    AppleSMCKeys keys{std::make_unique<fakes::FakeAppleSMCRegisters>(controller)};
};

// Listing

TEST_F(AppleSMCKeysTest, ListsTheKeysInTheControllersOrder) {
    controller.add("AAAA", "ui8 ", {1});
    ASSERT_EQ(keys.keyCount(), 5U);
    EXPECT_THAT(listed(5), ElementsAre("#KEY", "FS! ", "TC0P", "TC1P", "AAAA"));
    EXPECT_EQ(keys.keyAtIndex(5), std::nullopt);
    EXPECT_EQ(keys.keyAtIndex(0xFFFFFFFF), std::nullopt);
    EXPECT_THAT(keys.codes(), ElementsAre(packedSMCKey("#KEY"), packedSMCKey("FS! "), packedSMCKey("TC0P"),
                                          packedSMCKey("TC1P"), packedSMCKey("AAAA")));
}

TEST_F(AppleSMCKeysTest, HasNoKeysBeforeTheyAreListed) {
    EXPECT_EQ(keys.keyAtIndex(0), std::nullopt);
    EXPECT_FALSE(info("TC0P"));
    EXPECT_FALSE(read("TC0P"));
    EXPECT_THAT(keys.codes(), IsEmpty());
    EXPECT_EQ(controller.callCount, 0);
}

TEST_F(AppleSMCKeysTest, ListsAKeyOnceAndPassesOverNamesThatAreNone) {
    controller.add("TC0P", "sp78", {1, 2});
    controller.add("T\x01"
                   "0P",
                   "sp78", {1, 2});
    controller.add("TC", "sp78", {1, 2});
    controller.add("", "sp78", {1, 2});
    controller.add("TC2P", "sp78", {1, 2});
    ASSERT_EQ(keys.keyCount(), 5U);
    EXPECT_THAT(listed(5), ElementsAre("#KEY", "FS! ", "TC0P", "TC1P", "TC2P"));
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80})) << "the first of that name";
    EXPECT_EQ(read("TC2P"), (SMCBytes{1, 2})) << "an index behind the ones that were passed over";
}

TEST_F(AppleSMCKeysTest, DoesNotListAgainWhileTheNumberOfKeysStays) {
    EXPECT_EQ(keys.keyCount(), 4U);
    const int calls = controller.callCount;
    EXPECT_EQ(keys.keyCount(), 4U);
    EXPECT_EQ(controller.callCount, calls);
}

TEST_F(AppleSMCKeysTest, ListsAgainWhenTheNumberOfKeysChanges) {
    EXPECT_EQ(keys.keyCount(), 4U);
    controller.add("TC2P", "sp78", {1, 2});
    EXPECT_FALSE(info("TC2P")) << "the list does not change before the next count";
    EXPECT_EQ(keys.keyCount(), 5U);
    EXPECT_EQ(read("TC2P"), (SMCBytes{1, 2}));
    controller.keys.erase(controller.keys.begin() + 1, controller.keys.begin() + 3);
    EXPECT_EQ(keys.keyCount(), 3U);
    EXPECT_THAT(listed(3), ElementsAre("#KEY", "TC1P", "TC2P"));
    EXPECT_FALSE(info("TC0P"));
    EXPECT_FALSE(read("TC0P"));
}

TEST_F(AppleSMCKeysTest, AControllerWithoutKeysListsNone) {
    EXPECT_EQ(keys.keyCount(), 4U);
    controller.announcedCount = 0;
    EXPECT_EQ(keys.keyCount(), 0U);
    EXPECT_THAT(keys.codes(), IsEmpty());
    EXPECT_FALSE(read("TC0P"));
}

TEST_F(AppleSMCKeysTest, ANumberOfKeysThatCannotBeListsWhatIsThereInBoundedTime) {
    controller.announcedCount = 0x7FFFFFFF;
    EXPECT_EQ(keys.keyCount(), 4U);
    EXPECT_LE(controller.selectCount, 8192);
}

TEST_F(AppleSMCKeysTest, KeysThatCannotBeChosenAreNotListed) {
    controller.canSelect = false;
    EXPECT_EQ(keys.keyCount(), 0U);
    expectReleased();
}

// Information

TEST_F(AppleSMCKeysTest, TellsTypesWithBlanksAndFillsThoseThatEndEarlyWithAZeroByte) {
    controller.add("A001", "ui8 ", {1});
    controller.add("A002", "ui8", {1});
    controller.add("A003", "flt ", {1, 2, 3, 4});
    controller.add("A004", "{jst", {1});
    keys.keyCount();
    EXPECT_EQ(info("A001")->dataType, packedSMCKey("ui8 "));
    EXPECT_EQ(info("A002")->dataType, packedSMCKey("ui8\0"sv));
    EXPECT_NE(info("A002")->dataType, info("A001")->dataType);
    EXPECT_EQ(info("A003")->dataType, packedSMCKey("flt "));
    EXPECT_EQ(info("A004")->dataType, packedSMCKey("{jst"));
}

TEST_F(AppleSMCKeysTest, TellsTheLengthThatTheControllerTells) {
    for (const std::size_t length : {0U, 1U, 32U, 33U, 255U}) {
        std::string name = std::to_string(1000 + length);
        controller.add(name, "ch8*", std::vector<std::uint8_t>(length, 0x41));
    }
    keys.keyCount();
    for (const std::uint32_t length : {0U, 1U, 32U, 33U, 255U}) {
        SCOPED_TRACE(length);
        const auto found = info(std::to_string(1000 + length));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->dataSize, length);
    }
}

TEST_F(AppleSMCKeysTest, AsksForTypeAndLengthOnce) {
    keys.keyCount();
    EXPECT_TRUE(info("TC0P"));
    const int calls = controller.callCount;
    EXPECT_EQ(info("TC0P")->dataSize, 2U);
    EXPECT_EQ(controller.callCount, calls);
}

TEST_F(AppleSMCKeysTest, KnowsNothingOfKeysThatAreNotListed) {
    keys.keyCount();
    const int calls = controller.callCount;
    EXPECT_FALSE(info("TC9P"));
    EXPECT_FALSE(info("tc0p"));
    SMCBytes bytes{};
    EXPECT_EQ(keys.readBytes(packedSMCKey("TC9P"), bytes), smcresult::keyNotFound);
    EXPECT_EQ(controller.callCount, calls);
}

// Bytes

TEST_F(AppleSMCKeysTest, ReadsTheBytesAfreshEveryTime) {
    keys.keyCount();
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
    EXPECT_EQ(read("TC1P"), (SMCBytes{0x55, 0x66}));
    controller.key("TC0P").bytes = {0x29, 0x00};
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x29, 0x00}));
}

TEST_F(AppleSMCKeysTest, ReadsBytesThatLookLikeTheEndsOfLinesAndTexts) {
    controller.key("TC0P").bytes = {0x0A, 0x00};
    controller.key("TC1P").bytes = {0x00, 0x0A, 0x0D, 0x20, 0x0A};
    keys.keyCount();
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x0A, 0x00}));
    EXPECT_EQ(read("TC1P"), (SMCBytes{0x00, 0x0A, 0x0D, 0x20, 0x0A}));
}

TEST_F(AppleSMCKeysTest, ReadsAsManyBytesAsThereIsRoomFor) {
    for (const std::size_t length : {32U, 33U, 255U}) {
        controller.add(std::to_string(1000 + length), "ch8*", std::vector<std::uint8_t>(length, 0x41));
    }
    keys.keyCount();
    SMCBytes expected{};
    expected.fill(0x41);
    for (const std::size_t length : {32U, 33U, 255U}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(read(std::to_string(1000 + length)), expected);
    }
}

TEST_F(AppleSMCKeysTest, ARefusedKeyIsNotAskedAgainBeforeTheKeysAreCounted) {
    controller.key("TC0P").isRefused = true;
    keys.keyCount();
    EXPECT_FALSE(read("TC0P"));
    EXPECT_EQ(controller.dataCount, 1);
    const int calls = controller.callCount;
    for (int pass = 0; pass < 3; ++pass) EXPECT_FALSE(read("TC0P"));
    EXPECT_EQ(controller.callCount, calls);
    EXPECT_EQ(read("TC1P"), (SMCBytes{0x55, 0x66})) << "other keys are read as before";

    keys.keyCount();
    EXPECT_FALSE(read("TC0P"));
    EXPECT_EQ(controller.dataCount, 3);
    controller.key("TC0P").isRefused = false;
    EXPECT_FALSE(read("TC0P"));
    keys.keyCount();
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
}

TEST_F(AppleSMCKeysTest, ARefusedKeyStillTellsItsTypeAndLength) {
    controller.key("TC0P").isRefused = true;
    keys.keyCount();
    EXPECT_FALSE(read("TC0P"));
    ASSERT_TRUE(info("TC0P"));
    EXPECT_EQ(info("TC0P")->dataSize, 2U);
}

// Other programs

TEST_F(AppleSMCKeysTest, AReadingThatIsDisturbedOnceIsRepeatedWhereverThatHappens) {
    keys.keyCount();
    const int before = controller.callCount;
    EXPECT_TRUE(read("TC0P"));
    const int calls = controller.callCount - before;
    ASSERT_GE(calls, 3);
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        disturbOnce(call, 3);
        EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
        expectReleased();
    }
}

TEST_F(AppleSMCKeysTest, AListingThatIsDisturbedOnceIsCorrectWhereverThatHappens) {
    keys.keyCount();
    const int calls = controller.callCount;
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        AppleSMCKeys fresh(std::make_unique<fakes::FakeAppleSMCRegisters>(controller));
        disturbOnce(call, 1);
        EXPECT_EQ(fresh.keyCount(), 4U);
        EXPECT_EQ(fresh.codes(), keys.codes());
        expectReleased();
    }
}

TEST_F(AppleSMCKeysTest, InformationThatIsDisturbedOnceIsTheKeysOwnWhereverThatHappens) {
    controller.add("TEXT", "ch8*", std::vector<std::uint8_t>(9, 0x41));
    for (int call = 1; call <= 5; ++call) {
        SCOPED_TRACE(call);
        AppleSMCKeys fresh(std::make_unique<fakes::FakeAppleSMCRegisters>(controller));
        fresh.keyCount();
        disturbOnce(call, 4);
        const auto found = fresh.keyInfo(packedSMCKey("TC0P"));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->dataType, packedSMCKey("sp78"));
        EXPECT_EQ(found->dataSize, 2U);
        expectReleased();
    }
}

TEST_F(AppleSMCKeysTest, AReadingThatIsDisturbedWithoutEndEndsAndGivesNoOtherKeysBytes) {
    keys.keyCount();
    disturbAlways(3);
    const int selections = controller.selectCount;
    EXPECT_FALSE(read("TC0P"));
    EXPECT_LE(controller.selectCount - selections, 10);
    EXPECT_GE(controller.selectCount - selections, 2);
    EXPECT_FALSE(info("TC0P"));
    expectReleased();

    controller.beforeCall = nullptr;
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80})) << "a disturbed key is not a refused one";
    ASSERT_TRUE(info("TC0P"));
    EXPECT_EQ(info("TC0P")->dataSize, 2U);
}

TEST_F(AppleSMCKeysTest, ADisturbanceBetweenTheChecksGivesNoOtherKeysBytes) {
    keys.keyCount();
    controller.beforeCall = [this](std::string_view call) {
        if (call == "data") controller.selected = 3;
    };
    EXPECT_FALSE(read("TC0P"));
    EXPECT_LE(controller.dataCount, 10);
    controller.beforeCall = [this](std::string_view call) {
        if (call == "dataLength" || call == "typeName") controller.selected = 3;
    };
    EXPECT_FALSE(info("TC0P"));
    expectReleased();
}

TEST_F(AppleSMCKeysTest, AnotherKeyThatWasChosenUntilAfterTheReadingIsNoticed) {
    keys.keyCount();
    disturbOnce(2, 3);
    controller.beforeCall = [this, disturb = controller.beforeCall,
                             wasRead = false](std::string_view call) mutable {
        disturb(call);
        if (wasRead) controller.selected = 2; // selects it again before the next check
        wasRead = call == "data" && controller.dataCount == 0;
    };
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
}

TEST_F(AppleSMCKeysTest, AKeyThatIsNotWhereItWasListedGivesNoOtherKeysBytes) {
    keys.keyCount();
    std::swap(controller.keys[2], controller.keys[3]);
    EXPECT_FALSE(read("TC0P"));
    EXPECT_FALSE(info("TC1P"));
    expectReleased();
}

TEST_F(AppleSMCKeysTest, ARefusalThatWasAnotherKeysIsNoRefusal) {
    controller.key("TC1P").isRefused = true;
    keys.keyCount();
    bool isDone = false;
    controller.beforeCall = [&](std::string_view call) {
        if (call == "data" && !isDone) {
            controller.selected = 3;
            isDone = true;
        }
    };
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
    EXPECT_EQ(controller.dataCount, 2);
}

TEST_F(AppleSMCKeysTest, AListingThatIsDisturbedWithoutEndEnds) {
    disturbAlways(1);
    EXPECT_LE(keys.keyCount(), 4U);
    EXPECT_LE(controller.selectCount, 40);
    for (const std::uint32_t code : keys.codes()) EXPECT_EQ(code, packedSMCKey("FS! "));
    expectReleased();
}

// The lock

TEST_F(AppleSMCKeysTest, ChoosesKeysUnderTheLockAndReleasesIt) {
    controller.key("TC1P").isRefused = true;
    keys.keyCount();
    expectReleased();
    EXPECT_TRUE(info("TC0P"));
    expectReleased();
    EXPECT_TRUE(read("TC0P"));
    expectReleased();
    EXPECT_FALSE(read("TC1P"));
    expectReleased();
    controller.canSelect = false;
    EXPECT_FALSE(read("#KEY"));
    expectReleased();
    EXPECT_GT(controller.lockCount, 0);
    EXPECT_EQ(controller.unlockedSelectCount, 0);
}

TEST_F(AppleSMCKeysTest, WorksWithoutTheLockAndLeavesTheOtherHoldersAlone) {
    controller.canLock = false;
    EXPECT_EQ(keys.keyCount(), 4U);
    EXPECT_EQ(info("TC0P")->dataType, packedSMCKey("sp78"));
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
    EXPECT_EQ(controller.unlockCount, 0);
    disturbOnce(3, 3);
    EXPECT_EQ(read("TC0P"), (SMCBytes{0x28, 0x80}));
}

} // namespace
} // namespace kelvinbar::apple_smc_keys_test
