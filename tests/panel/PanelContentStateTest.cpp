#include "panel/PanelContentState.h"

#include "panel/SensorSections.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::panel_content_state_test {

namespace {

using enum PanelContentState;

SMCReading readingIn(SMCCategory category) {
    return {.key = "TC0P",
            .name = "CPU",
            .category = category,
            .type = "sp78",
            .value = "40",
            .numericValue = 40,
            .unit = "°C",
            .raw = "2800",
            .status = "OK"};
}

PanelContentState stateWith(bool isLoading, bool smcAvailable, const std::vector<SMCReading>& readings,
                            const KeySet& hiddenKeys = {}) {
    const ReadingList visible = visibleReadings(readings, hiddenKeys);
    return contentState(isLoading, smcAvailable, visible.size(), sectionModels(visible).size());
}

TEST(PanelContentState, EveryCombinationHasItsState) {
    struct Case {
        bool isLoading;
        bool smcAvailable;
        std::size_t visibleReadingCount;
        std::size_t sectionCount;
        PanelContentState expected;
    };

    for (const auto& [isLoading, smcAvailable, visibleReadingCount, sectionCount, expected] : {
             Case{false, false, 0, 0, unavailable},
             Case{false, false, 5, 0, unavailable},
             Case{false, false, 5, 2, unavailable},
             Case{false, true, 0, 0, nothingFound},
             Case{false, true, 5, 0, nothingFound},
             Case{false, true, 5, 2, sections},
             Case{true, false, 0, 0, scanning},
             Case{true, false, 5, 0, unavailable},
             Case{true, false, 5, 2, unavailable},
             Case{true, true, 0, 0, scanning},
             Case{true, true, 5, 0, nothingFound},
             Case{true, true, 5, 2, sections},
             Case{true, true, 1, 1, sections},
             Case{false, true, 300, 8, sections},
         }) {
        EXPECT_EQ(contentState(isLoading, smcAvailable, visibleReadingCount, sectionCount), expected)
            << isLoading << smcAvailable << ' ' << visibleReadingCount << ' ' << sectionCount;
    }
}

TEST(PanelContentState, TheFirstPassScansUntilThereIsSomethingToShow) {
    EXPECT_EQ(stateWith(true, false, {}), scanning);
    EXPECT_EQ(stateWith(true, true, {}), scanning);
    EXPECT_EQ(stateWith(true, true, {readingIn(SMCCategory::cpu)}), sections);
}

TEST(PanelContentState, WhileARefreshRunsTheSectionsStay) {
    const std::vector<SMCReading> readings{readingIn(SMCCategory::cpu)};
    EXPECT_EQ(stateWith(true, true, readings), stateWith(false, true, readings));
}

TEST(PanelContentState, AVisibleReadingOfNoSectionEndsTheScanning) {
    EXPECT_EQ(stateWith(true, true, {readingIn(SMCCategory::overview)}), nothingFound);
    EXPECT_EQ(stateWith(true, true, {readingIn(SMCCategory::unknown)}), nothingFound);
}

TEST(PanelContentState, WithEverythingHiddenNothingIsFound) {
    EXPECT_EQ(stateWith(false, true, {readingIn(SMCCategory::cpu)}, {"TC0P"}), nothingFound);
}

TEST(PanelContentState, WithEverythingHiddenARefreshScans) {
    EXPECT_EQ(stateWith(true, true, {readingIn(SMCCategory::cpu)}, {"TC0P"}), scanning);
}

TEST(PanelContentState, WithoutTheControllerNoSectionsAreShown) {
    EXPECT_EQ(stateWith(false, false, {readingIn(SMCCategory::cpu)}), unavailable);
    EXPECT_EQ(stateWith(true, false, {readingIn(SMCCategory::cpu)}), unavailable);
}

// System facts

std::vector<SMCReading> readingsOfTypes(const std::vector<std::string>& types) {
    std::vector<SMCReading> readings(types.size());
    for (std::size_t index = 0; index < types.size(); ++index) readings[index].type = types[index];
    return readings;
}

TEST(SystemFacts, AreReadingsOfTheOperatingSystemAlone) {
    EXPECT_TRUE(areSystemFacts(readingsOfTypes({"native", "native"})));
    EXPECT_FALSE(areSystemFacts(readingsOfTypes({"native", "sp78"})));
}

TEST(SystemFacts, NoReadingsAreNone) { EXPECT_FALSE(areSystemFacts({})); }

} // namespace
} // namespace kelvinbar::panel_content_state_test
