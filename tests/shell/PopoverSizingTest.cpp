#include "shell/PopoverSizing.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::popover_sizing_test {

namespace {

using Readings = std::vector<SMCReading>;

SMCReading readingIn(SMCCategory category, const std::string& key) {
    return {.key = key,
            .name = key,
            .category = category,
            .type = "ui8 ",
            .value = "1",
            .numericValue = 1,
            .unit = "",
            .raw = "",
            .status = "OK"};
}

void addReadings(Readings& readings, SMCCategory category, int count) {
    for (int number = 0; number < count; ++number) {
        readings.push_back(readingIn(category, std::to_string(readings.size())));
    }
}

constexpr Rect notebookScreen{0, 25, 1440, 875};
constexpr Rect tallScreen{0, 0, 2160, 3840};

Size fixedSize(const Rect& visibleFrame, double manualHeight) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 40);
    return targetPopoverSize({.visibleFrame = visibleFrame,
                              .displayMode = SMCWindowDisplayMode::fixed,
                              .manualPopoverHeight = manualHeight,
                              .readings = readings,
                              .hiddenKeys = {}});
}

Size dynamicSize(const Rect& visibleFrame, double manualHeight, const Readings& readings,
                 const KeySet& hiddenKeys = {}) {
    return targetPopoverSize({.visibleFrame = visibleFrame,
                              .displayMode = SMCWindowDisplayMode::dynamic,
                              .manualPopoverHeight = manualHeight,
                              .readings = readings,
                              .hiddenKeys = hiddenKeys});
}

void expectSize(Size size, double width, double height) {
    EXPECT_EQ(size.width, width);
    EXPECT_EQ(size.height, height);
}

// Fixed

TEST(PopoverSizing, FixedHasTheManualHeightWhateverTheReadings) {
    expectSize(fixedSize(notebookScreen, 690), 462, 690);
}

TEST(PopoverSizing, AManualHeightBelowTheMinimumBecomesTheMinimum) {
    expectSize(fixedSize(notebookScreen, 400), 462, 560);
    expectSize(fixedSize(notebookScreen, 560), 462, 560);
    expectSize(fixedSize(notebookScreen, 560.5), 462, 560.5);
    expectSize(fixedSize(notebookScreen, 0), 462, 560);
    expectSize(fixedSize(notebookScreen, -700), 462, 560);
}

TEST(PopoverSizing, AManualHeightIsLimitedByTheScreen) {
    expectSize(fixedSize(notebookScreen, 900), 462, 795);
    expectSize(fixedSize(notebookScreen, 795), 462, 795);
    expectSize(fixedSize(notebookScreen, std::numeric_limits<double>::infinity()), 462, 795);
}

TEST(PopoverSizing, OnALowScreenTheLeastHeightWins) {
    expectSize(fixedSize({0, 0, 1440, 600}, 900), 462, 560);
    expectSize(fixedSize({0, 0, 1440, 640}, 900), 462, 560);
    expectSize(fixedSize({0, 0, 1440, 641}, 900), 462, 561);
}

TEST(PopoverSizing, TheWidthFollowsTheScreenOnlyWhereThatIsNarrow) {
    expectSize(fixedSize({0, 0, 500, 875}, 690), 420, 690);
    expectSize(fixedSize({0, 0, 501, 875}, 690), 421, 690);
    expectSize(fixedSize({0, 0, 520, 875}, 690), 440, 690);
    expectSize(fixedSize({0, 0, 542, 875}, 690), 462, 690);
    expectSize(fixedSize({0, 0, 1000, 875}, 690), 462, 690);
    expectSize(fixedSize({0, 0, 300, 875}, 690), 420, 690);
}

TEST(PopoverSizing, TheOriginOfTheScreenDoesNotMatter) {
    expectSize(fixedSize({-3000, 2000, 520, 875}, 900), 440, 795);
}

TEST(PopoverSizing, WithoutAScreenItIsTheLeastWhateverTheManualHeight) {
    expectSize(fixedSize({}, 690), 420, 560);
    expectSize(fixedSize({}, 1400), 420, 560);
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 100);
    expectSize(dynamicSize({}, 1400, readings), 420, 560);
}

// Dynamic

TEST(PopoverSizing, DynamicIsAsHighAsTheScreenAllowsForManyRows) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 4);
    addReadings(readings, SMCCategory::gpu, 3);
    addReadings(readings, SMCCategory::fans, 3);
    expectSize(dynamicSize(notebookScreen, 560, readings), 462, 795);
    expectSize(dynamicSize(tallScreen, 560, readings), 462, 902);
}

TEST(PopoverSizing, DynamicKeepsTheManualHeightAsItsFloor) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 2);
    expectSize(dynamicSize(notebookScreen, 600, readings), 462, 600);
    expectSize(dynamicSize(notebookScreen, 300, readings), 462, 560);
    expectSize(dynamicSize(notebookScreen, 900, readings), 462, 795);
}

TEST(PopoverSizing, DynamicGrowsOnceTheRowsNeedMoreThanTheManualHeight) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 8);
    expectSize(dynamicSize(tallScreen, 684, readings), 462, 684);
    expectSize(dynamicSize(tallScreen, 683, readings), 462, 684);
    addReadings(readings, SMCCategory::cpu, 1);
    expectSize(dynamicSize(tallScreen, 684, readings), 462, 684 + 47);
    addReadings(readings, SMCCategory::fans, 1);
    expectSize(dynamicSize(tallScreen, 684, readings), 462, 684 + 47 + 62 + 47);
}

TEST(PopoverSizing, HiddenReadingsCountNeitherAsRowsNorAsCards) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 8);
    readings.push_back(readingIn(SMCCategory::cpu, "TC0P"));
    readings.push_back(readingIn(SMCCategory::fans, "F0Ac"));
    expectSize(dynamicSize(tallScreen, 560, readings), 462, 246 + 2 * 62 + 10 * 47);
    expectSize(dynamicSize(tallScreen, 560, readings, {"F0Ac", "TC0P", "none"}), 462, 246 + 62 + 8 * 47);
}

TEST(PopoverSizing, ReadingsWithoutAValueToShowCountNeitherAsRowsNorAsCards) {
    Readings readings;
    addReadings(readings, SMCCategory::cpu, 8);
    SMCReading placeholder = readingIn(SMCCategory::fans, "F0Ac");
    placeholder.value = "n/a";
    readings.push_back(placeholder);
    SMCReading infinite = readingIn(SMCCategory::cpu, "TC0P");
    infinite.numericValue = std::numeric_limits<double>::infinity();
    readings.push_back(infinite);
    SMCReading withoutBytes = readingIn(SMCCategory::battery, "B0AC");
    withoutBytes.numericValue.reset();
    readings.push_back(withoutBytes);
    expectSize(dynamicSize(tallScreen, 560, readings), 462, 246 + 62 + 8 * 47);
}

TEST(PopoverSizing, EveryCategoryCountsByItself) {
    Readings readings;
    for (const SMCCategory category : {SMCCategory::overview, SMCCategory::unknown, SMCCategory::power,
                                       SMCCategory::currents, SMCCategory::battery}) {
        addReadings(readings, category, 1);
    }
    expectSize(dynamicSize(tallScreen, 560, readings), 462, 246 + 5 * 62 + 5 * 47);
}

TEST(PopoverSizing, AllCategoriesTogetherAreThirteenCards) {
    Readings readings;
    for (const SMCCategory category : allCategories) addReadings(readings, category, 2);
    expectSize(dynamicSize(tallScreen, 560, readings), 462, 246 + 13 * 62 + 26 * 47);
}

TEST(PopoverSizing, DynamicWithoutReadingsHasTheManualHeight) {
    expectSize(dynamicSize(notebookScreen, 690, {}), 462, 690);
}

TEST(PopoverSizing, TheHeightOfVeryManyReadingsIsLimitedByTheScreen) {
    Readings readings;
    addReadings(readings, SMCCategory::sensors, 10'000);
    expectSize(dynamicSize(notebookScreen, 690, readings), 462, 795);
}

} // namespace
} // namespace kelvinbar::popover_sizing_test
