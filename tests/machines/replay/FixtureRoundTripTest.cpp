#include "base/Text.h"
#include "machines/replay/SnapshotParser.h"
#include "tests/FileContent.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/RecordedSMCDriver.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::fixture_round_trip_test {

namespace {

constexpr std::array<std::string_view, 12> fixtureNames{
    "Hackintosh_VirtualSMC_smcutil_PARTIAL",
    "M4_full_page1of6",
    "M5Pro_Tkeys",
    "MacBook10_1",
    "MacBookAir5_2",
    "MacBookPro12_1",
    "MacBookPro16_1",
    "MacPro7_1",
    "Macmini8_1",
    "VMware8_5",
    "iMac11_2",
    "iMacPro1_1",
};

const std::filesystem::path folder = std::filesystem::path(KELVINBAR_FIXTURES) / "smc";

class FixtureRoundTrip : public testing::TestWithParam<std::string_view> {
  protected:
    [[nodiscard]] static std::string fixture() {
        return contentOf(folder / (std::string(GetParam()) + ".txt"));
    }

    [[nodiscard]] static std::string expectedExport() {
        const std::string text = contentOf(folder / "expected" / (std::string(GetParam()) + ".txt"));
        return replacedAll(text, "Generated: TIME", "Generated: 2026-03-01T14:05:09Z");
    }
};

TEST_P(FixtureRoundTrip, EveryLineOfTheFixtureIsUsed) {
    const ReplayResult replay = replayed(fixture());
    EXPECT_TRUE(replay.machine);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>());
}

TEST_P(FixtureRoundTrip, TheExportIsTheIndependentlyCalculatedOne) {
    EXPECT_EQ(exportedReplay(fixture()), expectedExport());
}

/// Passing the bytes through the SMC protocol changes nothing.
TEST_P(FixtureRoundTrip, TheRecordedControllerGivesTheSameExport) {
    const fakes::FakeMachine machine;
    fakes::addRecordedKeys(*machine.driver, parseSnapshot(fixture()).machine.keys);
    EXPECT_EQ(exportedText(machine.machine()), expectedExport());
}

TEST_P(FixtureRoundTrip, ReplayingTheExportGivesTheSameExport) {
    const std::string first = exportedReplay(fixture());
    const ReplayResult replay = replayed(first);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>());
    ASSERT_TRUE(replay.machine);
    const std::string second = exportedText(*replay.machine);
    EXPECT_EQ(second, first);
    EXPECT_EQ(exportedReplay(second), first);
}

INSTANTIATE_TEST_SUITE_P(RealMachines, FixtureRoundTrip, testing::ValuesIn(fixtureNames),
                         [](const auto& test) { return std::string(test.param); });

TEST(FixtureRoundTripList, NamesEveryFixtureInTheFolder) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".txt") found.push_back(entry.path().stem().string());
    }
    std::ranges::sort(found);
    std::vector<std::string> listed(fixtureNames.begin(), fixtureNames.end());
    std::ranges::sort(listed);
    EXPECT_EQ(found, listed);
}

} // namespace
} // namespace kelvinbar::fixture_round_trip_test
