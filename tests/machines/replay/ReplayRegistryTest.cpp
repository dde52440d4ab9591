#include "machines/replay/ReplayRegistry.h"

#include "smc/RegistryFans.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

/// The fans that the walk finds in the registry replayed from `fans`.
std::vector<SMCKeyResult> walkedFans(const std::vector<RecordedFan>& fans) {
    useRegistry(makeReplayRegistry(fans).registry, std::make_shared<fakes::FakeMonotonicClock>());
    std::vector<SMCKeyResult> results = cachedRegistryFans();
    useRegistry(nullptr, nullptr);
    return results;
}

RecordedFan fan(std::string_view key, std::string_view name, std::string_view speed, std::string_view raw) {
    return {.lineNumber = 5,
            .key = std::string(key),
            .name = std::string(name),
            .speed = std::string(speed),
            .raw = std::string(raw)};
}

std::vector<std::string> keysOf(const std::vector<SMCKeyResult>& fans) {
    std::vector<std::string> keys(fans.size());
    std::ranges::transform(fans, keys.begin(),
                           [](const SMCKeyResult& each) { return each.textOr("key", ""); });
    return keys;
}

TEST(ReplayRegistry, IsEmptyWithoutFans) {
    EXPECT_TRUE(walkedFans({}).empty());
    EXPECT_TRUE(makeReplayRegistry({}).problems.empty());
}

TEST(ReplayRegistry, LetsTheWalkFindAFanAsItsLineShowsIt) {
    const auto fans = walkedFans({fan("FAN0", "CPU Fan", "1500", "05DC")});
    ASSERT_EQ(fans.size(), 1U);
    EXPECT_EQ(fans[0].size(), 10U);
    EXPECT_EQ(fans[0].textOr("key", ""), "FAN0");
    EXPECT_EQ(fans[0].textOr("type", ""), "ioreg");
    EXPECT_EQ(fans[0].textOr("name", ""), "CPU Fan");
    EXPECT_EQ(fans[0].textOr("value", ""), "1500");
    EXPECT_EQ(fans[0].textOr("raw", ""), "05DC");
}

/// The name and the speed are what people read; a raw text that says something else was edited or lost.
TEST(ReplayRegistry, ShowsTheSpeedOfTheLineWhateverItsRawTextSays) {
    for (const std::string_view raw : {"", "FFFF", "2000", "junk", "2000 RPM", "\t"}) {
        SCOPED_TRACE(raw);
        const std::string text = exportedReplay("FAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=" + std::string(raw));
        EXPECT_TRUE(
            text.starts_with(std::string(exportedHead).append("1\n\nFAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=")))
            << text;
    }
}

TEST(ReplayRegistry, TakesASpeedWithoutItsUnit) {
    for (const std::string_view value : {"1450", "1450 RPM", "1450RPM", " 1450  RPM "}) {
        SCOPED_TRACE(value);
        EXPECT_TRUE(exportedReplay("FAN0\tioreg\tCPU Fan\t" + std::string(value).append("\tRAW=5AA"))
                        .ends_with("\nFAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=5AA"));
    }
}

TEST(ReplayRegistry, TakesTheSpeedsAtBothEndsOfTheRange) {
    EXPECT_TRUE(exportedReplay("FAN0\tioreg\tCPU Fan\t0 RPM\tRAW=0").ends_with("\t0 RPM\tRAW=0"));
    EXPECT_TRUE(
        exportedReplay("FAN0\tioreg\tCPU Fan\t30000 RPM\tRAW=7530").ends_with("\t30000 RPM\tRAW=7530"));
    EXPECT_EQ(exportedReplay("FAN0\tioreg\tCPU Fan\t30001 RPM\tRAW=7531"), "");
}

TEST(ReplayRegistry, PutsFansInAnyOrderOfLinesAtTheirPlaces) {
    const auto fans = walkedFans({fan("FAN2", "Rear Fan", "902", "386"), fan("F0Ac", "Fan 1", "901", "385"),
                                  fan("FAN0", "CPU Fan", "900", "384")});
    EXPECT_EQ(keysOf(fans), (std::vector<std::string>{"FAN0", "F0Ac", "FAN2"}));
}

TEST(ReplayRegistry, LeavesNoTraceOfThePlacesBetweenInASnapshot) {
    EXPECT_EQ(exportedReplay("F0Ac\tioreg\tFan 20\t900 RPM\tRAW=384"),
              std::string(exportedHead).append("1\n\nF0Ac\tioreg\tFan 20\t900 RPM\tRAW=384"));
    EXPECT_EQ(exportedReplay("FAN7\tioreg\tCPU Fan\t900 RPM\tRAW=384"),
              std::string(exportedHead).append("1\n\nFAN7\tioreg\tCPU Fan\t900 RPM\tRAW=384"));
}

/// Only names and speeds are promised: which keys a registry gives depends on its other fans.
TEST(ReplayRegistry, KeepsNameAndSpeedOfAFanWhoseKeyNoRegistryGives) {
    for (const std::string_view key : {"TC0P", "FANA", "F0Ac", "F9Zz", "zzzz", "    "}) {
        SCOPED_TRACE(key);
        const ReplayResult replay = replayed(std::string(key).append("\tioreg\tCPU Fan\t1450 RPM\tRAW=5AA"));
        EXPECT_TRUE(replay.problems.empty());
        ASSERT_TRUE(replay.machine);
        EXPECT_THAT(exportedText(*replay.machine), testing::EndsWith("\tioreg\tCPU Fan\t1450 RPM\tRAW=5AA"));
    }
}

TEST(ReplayRegistry, KeepsNamesAndSpeedsOfTwoFansThatWouldStandAtOnePlace) {
    const std::string text =
        exportedReplay("FAN1\tioreg\tCPU Fan\t900 RPM\tRAW=384\nF0Ac\tioreg\tFan 1\t901 RPM\tRAW=385");
    EXPECT_THAT(text, testing::HasSubstr("Active keys: 2\n"));
    EXPECT_THAT(text, testing::HasSubstr("\tioreg\tCPU Fan\t900 RPM\tRAW=384"));
    EXPECT_THAT(text, testing::HasSubstr("\tioreg\tFan 1\t901 RPM\tRAW=385"));
}

/// The key of an edited line is free to choose, but not one that another line has.
TEST(ReplayRegistry, GivesNoEditedFanTheKeyOfAnotherFan) {
    for (const std::string_view other : {"FAN0\tioreg\tFan 3", "FAN0\tioreg\tFan 12", "FAN1\tioreg\tFan 0",
                                         "FAN0\tioreg\tRear Fan", "FAN1\tioreg\tRear Fan"}) {
        SCOPED_TRACE(other);
        const std::string text = exportedReplay(std::string(other) + "\t900 RPM\tRAW=384\n" +
                                                "F0Ac\tioreg\tCPU Fan\t901 RPM\tRAW=385\n"
                                                "F1Ac\tioreg\tPump Fan\t902 RPM\tRAW=386\n");
        EXPECT_THAT(text, testing::HasSubstr("Active keys: 3\n"));
        EXPECT_THAT(text, testing::HasSubstr(std::string(other).append("\t900 RPM\tRAW=384")));
        EXPECT_THAT(text, testing::HasSubstr("\tioreg\tCPU Fan\t901 RPM\tRAW=385"));
        EXPECT_THAT(text, testing::HasSubstr("\tioreg\tPump Fan\t902 RPM\tRAW=386"));
    }
}

/// Eight names are shown under the keys that the catalogue knows.
TEST(ReplayRegistry, NamesTheLineOfAnEditedFanForWhichNoKeyIsLeft) {
    std::string text;
    for (int number = 0; number < 9; ++number) {
        text.append("F").append(std::to_string(number)).append("Zz\tioreg\tCPU Fan\t900 RPM\tRAW=384\n");
    }
    EXPECT_EQ(lineNumbers(replayed(text).problems), std::vector<std::size_t>{9});
    EXPECT_THAT(exportedReplay(text), testing::HasSubstr("Active keys: 8\n"));
}

TEST(ReplayRegistry, NamesTheLineOfAFanThatNoRegistryCanShow) {
    for (const RecordedFan& impossible :
         {fan("FAN0", "Pump", "900", "384"), fan("FAN0", "", "900", "384"), fan("F4Ac", "F4Ac", "900", "384"),
          fan("FAN0", "CPU Fan", "30001", "7531"), fan("FAN0", "CPU Fan", "-1", "1")}) {
        SCOPED_TRACE(impossible.key + " " + impossible.name + " " + impossible.speed);
        const auto result = makeReplayRegistry({impossible});
        ASSERT_EQ(result.problems.size(), 1U);
        EXPECT_EQ(result.problems[0].lineNumber, 5U);
        EXPECT_FALSE(result.problems[0].reason.empty());
    }
}

TEST(ReplayRegistry, CanBeWalkedTwice) {
    const auto result = makeReplayRegistry({fan("FAN0", "CPU Fan", "900", "384")});
    for (int walk = 0; walk < 2; ++walk) {
        const auto entries = result.registry->iterateRecursively("IOService");
        ASSERT_NE(entries, nullptr);
        EXPECT_NE(entries->next(), nullptr);
        EXPECT_EQ(entries->next(), nullptr);
        EXPECT_EQ(entries->next(), nullptr);
    }
}

} // namespace

} // namespace kelvinbar
