#include "store/AbsentKeys.h"

#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/fakes/RecordingUserDefaults.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::absent_keys_test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Keys = AbsentKeys::Keys;

constexpr std::string_view entry = "Absent";

/// Four chosen keys and room for two more.
class AbsentKeysTest : public testing::Test {
  protected:
    AbsentKeysTest() { wallClock.time = std::chrono::sys_days(std::chrono::days(20'000)); }

    [[nodiscard]] AbsentKeys loaded() {
        return {defaults, {.entry = entry, .room = 6}, wallClock, recording.log};
    }

    /// A pass that finds `found` and nothing else.
    Keys pass(const AbsentKeys::KeyViews& found) { return chosen = absent.settled(chosen, found); }

    void choose(const Keys& keys) {
        absent.changed(chosen, keys);
        chosen = keys;
    }

    [[nodiscard]] std::optional<TextList> stored() const { return defaults.textList(entry); }

    fakes::RecordingUserDefaults defaults;
    fakes::FakeWallClock wallClock;
    fakes::RecordingLog recording{"info"};
    AbsentKeys absent = loaded();
    Keys chosen{"a", "b", "c", "d"};
};

TEST_F(AbsentKeysTest, AKeyWithoutAReadingIsNotChosenAnyMoreAndIsRemembered) {
    EXPECT_THAT(pass({"a", "c", "d", "x"}), ElementsAre("a", "c", "d"));
    EXPECT_THAT(absent.waitingKeys(), ElementsAre("b"));
    EXPECT_EQ(stored(), TextList{"1\t20000\tb"});
}

TEST_F(AbsentKeysTest, AKeyComesBackToItsPlaceWithItsReading) {
    pass({"a", "c", "d"});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(absent.waitingKeys(), IsEmpty());
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(AbsentKeysTest, SeveralKeysComeBackOneByOneInTheirOldOrder) {
    EXPECT_THAT(pass({"c"}), ElementsAre("c"));
    EXPECT_THAT(pass({"c", "d"}), ElementsAre("c", "d"));
    EXPECT_THAT(pass({"a", "c", "d"}), ElementsAre("a", "c", "d"));
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
}

TEST_F(AbsentKeysTest, AllKeysComeBackAfterAPassWithoutReadings) {
    EXPECT_THAT(pass({}), IsEmpty());
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
}

TEST_F(AbsentKeysTest, WhatIsRememberedComesBackAfterARestart) {
    pass({"b", "d"});
    absent = loaded();
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
}

TEST_F(AbsentKeysTest, APassThatChangesNothingWritesNothing) {
    pass({"a", "b", "c", "d"});
    EXPECT_THAT(defaults.writes, IsEmpty());
    pass({"a", "c", "d"});
    defaults.writes.clear();
    wallClock.time += 24h;
    pass({"a", "c", "d"});
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(AbsentKeysTest, NothingIsRememberedByDefault) {
    AbsentKeys plain;
    EXPECT_THAT(plain.settled(chosen, {"a"}), ElementsAre("a"));
    EXPECT_THAT(plain.settled({"a"}, {"a", "b"}), ElementsAre("a"));
    plain.forgetAll();
    EXPECT_THAT(plain.waitingKeys(), IsEmpty());
}

// Changes by the user

TEST_F(AbsentKeysTest, AKeyComesBackBehindItsNeighbourWhenOthersWereRemoved) {
    pass({"a", "b", "d"});
    choose({"b", "d"});
    EXPECT_THAT(pass({"b", "c", "d"}), ElementsAre("b", "c", "d"));
}

TEST_F(AbsentKeysTest, AKeyComesBackToTheFrontWhenAllBeforeItWereRemoved) {
    pass({"a", "c", "d"});
    choose({"c", "d"});
    EXPECT_THAT(pass({"b", "c", "d"}), ElementsAre("b", "c", "d"));
}

TEST_F(AbsentKeysTest, AKeyFollowsItsNeighbourToAnotherPlace) {
    pass({"a", "c", "d"});
    choose({"c", "d", "a"});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("c", "d", "a", "b"));
}

TEST_F(AbsentKeysTest, NewKeysStandBehindAKeyThatComesBack) {
    pass({"a", "b", "c"});
    choose({"a", "b", "c", "e"});
    EXPECT_THAT(pass({"a", "b", "c", "d", "e"}), ElementsAre("a", "b", "c", "d", "e"));
}

TEST_F(AbsentKeysTest, AKeyComesBackEvenIfTheUserRemovedAllOthers) {
    pass({"a", "c", "d"});
    choose({});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("b"));
}

TEST_F(AbsentKeysTest, AKeyThatTheUserRemovedDoesNotComeBack) {
    choose({"a", "c", "d"});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "c", "d"));
}

TEST_F(AbsentKeysTest, AKeyThatIsChosenAnewIsWhereTheUserPutIt) {
    pass({"a", "c", "d"});
    choose({"a", "c", "d", "b"});
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "c", "d", "b"));
}

TEST_F(AbsentKeysTest, AKeyIsForgottenWhenTheUserTakesItsSlot) {
    pass({"a", "c", "d"});
    choose({"a", "c", "d", "e", "f", "g"});
    EXPECT_EQ(stored(), std::nullopt);
    choose({"a", "c", "d", "e", "f"});
    EXPECT_THAT(pass({"a", "b", "c", "d", "e", "f"}), ElementsAre("a", "c", "d", "e", "f"));
}

TEST_F(AbsentKeysTest, TheKeyThatHasBeenAbsentLongestLosesItsSlotFirst) {
    pass({"a", "b", "d"});
    wallClock.time += 24h;
    pass({"b", "d"});
    choose({"b", "d", "e", "f", "g"});
    EXPECT_THAT(absent.waitingKeys(), ElementsAre("a"));
    EXPECT_THAT(pass({"a", "b", "c", "d", "e", "f", "g"}), ElementsAre("a", "b", "d", "e", "f", "g"));
}

TEST_F(AbsentKeysTest, AForgottenKeyDoesNotComeBack) {
    pass({"a", "d"});
    absent.forget("b");
    EXPECT_EQ(stored(), TextList{"2\t20000\tc"});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "d", "c")) << "nothing else has moved";
    absent.forgetAll();
    EXPECT_EQ(stored(), std::nullopt);
}

// Days

TEST_F(AbsentKeysTest, AKeyComesBackAfter90DaysAndNotLater) {
    pass({"a", "d"});
    const auto lost = wallClock.time;
    wallClock.time = lost + std::chrono::days(90);
    EXPECT_THAT(pass({"a", "b", "d"}), ElementsAre("a", "b", "d"));
    wallClock.time = lost + std::chrono::days(91);
    pass({"a", "b", "d"});
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "d"));
}

TEST_F(AbsentKeysTest, TheDayCountsFromTheFirstPassWithoutTheReading) {
    pass({"a", "c", "d"});
    for (int day = 1; day <= 91; ++day) {
        EXPECT_THAT(absent.waitingKeys(), ElementsAre("b")) << day;
        wallClock.time += 24h;
        pass({"a", "c", "d"});
    }
    EXPECT_THAT(absent.waitingKeys(), IsEmpty());
}

TEST_F(AbsentKeysTest, ADayThatIsStillToComeCountsAsToday) {
    pass({"a", "c", "d"});
    wallClock.time -= std::chrono::years(5);
    absent = loaded();
    pass({"a", "c", "d"});
    EXPECT_EQ(stored(), TextList{"1\t20000\tb"});
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
}

// Keys that move

TEST_F(AbsentKeysTest, AnAbsentKeyFollowsItsDevice) {
    pass({"a", "c", "d"});
    const auto currentKey = [](const std::string& key) { return key == "b" ? "b2" : key; };
    EXPECT_THAT(chosen = absent.moved(chosen, currentKey), ElementsAre("a", "c", "d"));
    EXPECT_EQ(stored(), TextList{"1\t20000\tb2"});
    EXPECT_THAT(pass({"a", "b", "b2", "c", "d"}), ElementsAre("a", "b2", "c", "d"));
}

TEST_F(AbsentKeysTest, AKeyThatAnotherDeviceHasWaitsForItsOwn) {
    const auto isTaken = [](const std::string& key) {
        return key == "b" ? std::nullopt : std::optional(key);
    };
    EXPECT_THAT(chosen = absent.moved(chosen, isTaken), ElementsAre("a", "c", "d"));
    EXPECT_THAT(absent.takenKeys(), ElementsAre("b"));
    EXPECT_THAT(absent.waitingKeys(), IsEmpty());
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "c", "d"));
    const auto isBack = [](const std::string& key) { return key == "b" ? "b2" : key; };
    chosen = absent.moved(chosen, isBack);
    EXPECT_THAT(pass({"a", "b", "b2", "c", "d"}), ElementsAre("a", "b2", "c", "d"));
}

TEST_F(AbsentKeysTest, AChosenKeyCountsMoreThanARememberedOneThatMovesToIt) {
    pass({"a", "c", "d"});
    const auto currentKey = [](const std::string& key) { return key == "b" ? "c" : key; };
    EXPECT_THAT(absent.moved(chosen, currentKey), ElementsAre("a", "c", "d"));
    EXPECT_EQ(stored(), std::nullopt);
}

// Damaged preferences

TEST_F(AbsentKeysTest, BrokenEntriesAreDroppedAndLogged) {
    const TextList broken{"",
                          "b",
                          "1\tb",
                          "1\t20000\t",
                          "1\t20000\t b",
                          "6\t1\tb",
                          "-1\t20000\tb",
                          "1\t-1\tb",
                          "x\t20000\tb",
                          "1\tx\tb",
                          "1\t1.5\tb",
                          "9999999999999999999999\t1\tb",
                          "1\t99999999999\tb"};
    for (const std::string& each : broken) {
        defaults.values.setTextList(entry, {each, "0\t20000\tgood"});
        EXPECT_THAT(loaded().waitingKeys(), ElementsAre("good")) << each;
    }
    EXPECT_EQ(recording.lines().size(), broken.size());
    EXPECT_THAT(recording.lines().back(), HasSubstr("Absent: \"1\t99999999999\tb\" is no absent key"));
    EXPECT_THAT(defaults.writes, IsEmpty());
}

TEST_F(AbsentKeysTest, OfTwoEntriesWithOneKeyTheFirstCounts) {
    defaults.values.setTextList(entry, {"1\t20000\tb", "0\t20000\tb"});
    absent = loaded();
    chosen = {"a", "c"};
    EXPECT_THAT(pass({"a", "b", "c"}), ElementsAre("a", "b", "c"));
    EXPECT_EQ(recording.lines().size(), 1U);
}

TEST_F(AbsentKeysTest, AnEntryOfAKeyThatIsChosenIsDropped) {
    defaults.values.setTextList(entry, {"0\t20000\td"});
    absent = loaded();
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(AbsentKeysTest, MoreEntriesThanSlotsPushOutNoChosenKey) {
    defaults.values.setTextList(entry, {"0\t9\te", "1\t20000\tf", "2\t20000\tg", "3\t20000\th"});
    absent = loaded();
    EXPECT_THAT(pass({"a", "b", "c", "d"}), ElementsAre("a", "b", "c", "d"));
    EXPECT_EQ(absent.waitingKeys().size(), 2U);
}

} // namespace
} // namespace kelvinbar::absent_keys_test
