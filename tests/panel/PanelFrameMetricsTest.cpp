#include "panel/PanelFrameMetrics.h"

#include "panel/SensorListLayout.h"
#include "panel/SensorSections.h"
#include "shell/PopoverSizing.h"

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::panel_frame_metrics_test {

namespace {

/// Readings of random categories, each with a value.
std::vector<SMCReading> randomReadings(std::mt19937& random, const std::vector<SMCCategory>& categories) {
    std::vector<SMCReading> readings;
    const std::size_t count = 1 + random() % 60;
    for (std::size_t number = 0; number < count; ++number) {
        readings.push_back({.key = "K" + std::to_string(number),
                            .name = "Sensor",
                            .category = categories[random() % categories.size()],
                            .type = "sp78",
                            .value = "40",
                            .numericValue = 40,
                            .unit = "°C",
                            .raw = "2800",
                            .status = "OK"});
    }
    return readings;
}

/// What the views take, at the standard text size.
double panelHeight(const std::vector<SMCReading>& readings) {
    const SensorListMetrics metrics(1);
    std::vector<std::size_t> rowCounts;
    for (const SensorSectionModel& section : sectionModels(visibleReadings(readings, {}))) {
        rowCounts.push_back(section.readings.size());
    }
    return PanelFrameMetrics().height() + listHeight(metrics, cardSpans(metrics, rowCounts));
}

TEST(DynamicHeight, IsThatOfTheViewsWhereEveryCategoryHasACard) {
    std::mt19937 random(17);
    for (int list = 0; list < 500; ++list) {
        const auto readings = randomReadings(
            random, {SMCCategory::cpu, SMCCategory::gpu, SMCCategory::memory, SMCCategory::storage,
                     SMCCategory::fans, SMCCategory::voltages, SMCCategory::power, SMCCategory::thermal});
        ASSERT_EQ(dynamicPopoverHeight(readings, {}), panelHeight(readings)) << list;
    }
}

TEST(DynamicHeight, IsACardHigherForEachCategoryThatSharesOne) {
    std::mt19937 random(17);
    for (int list = 0; list < 500; ++list) {
        const auto readings = randomReadings(
            random, {SMCCategory::cpu, SMCCategory::power, SMCCategory::currents, SMCCategory::battery});
        std::set<SMCCategory> sharing;
        for (const SMCReading& reading : readings) {
            if (reading.category != SMCCategory::cpu) sharing.insert(reading.category);
        }
        const double shared = sharing.empty() ? 0 : static_cast<double>(sharing.size()) - 1;
        ASSERT_EQ(dynamicPopoverHeight(readings, {}), panelHeight(readings) + 62 * shared) << list;
    }
}

} // namespace
} // namespace kelvinbar::panel_frame_metrics_test
