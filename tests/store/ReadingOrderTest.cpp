#include "store/ReadingOrder.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::reading_order_test {

namespace {

SMCReading readingIn(SMCCategory category, std::string key) {
    SMCReading reading;
    reading.key = std::move(key);
    reading.category = category;
    return reading;
}

std::vector<std::string> keysByCategoryAndKey(const std::vector<SMCReading>& readings) {
    std::vector<std::string> keys;
    for (const SMCReading& reading : sortedByCategoryAndKey(readings)) keys.push_back(reading.key);
    return keys;
}

std::vector<std::string> keysByKey(const std::vector<SMCReading>& readings) {
    std::vector<std::string> keys;
    for (const SMCReading* const reading : sortedByKey(readings)) keys.push_back(reading->key);
    return keys;
}

TEST(SortedByCategoryAndKey, CategoriesComeInTheOrderOfTheirTitles) {
    std::vector<SMCReading> readings;
    for (const SMCCategory category :
         {SMCCategory::overview, SMCCategory::cpu, SMCCategory::gpu, SMCCategory::memory, SMCCategory::fans,
          SMCCategory::battery, SMCCategory::power, SMCCategory::voltages, SMCCategory::currents,
          SMCCategory::storage, SMCCategory::thermal, SMCCategory::sensors, SMCCategory::unknown}) {
        readings.push_back(readingIn(category, std::string(rawValue(category))));
    }
    EXPECT_EQ(keysByCategoryAndKey(readings),
              (std::vector<std::string>{"Battery", "CPU", "Currents", "Fans", "GPU / iGPU", "Memory",
                                        "Misc Sensors", "Other Keys", "Overview", "Power", "Storage",
                                        "Thermal Zones", "Voltages"}));
}

TEST(SortedByCategoryAndKey, TheCategoryCountsBeforeTheKey) {
    EXPECT_EQ(
        keysByCategoryAndKey({readingIn(SMCCategory::overview, "AAAA"),
                              readingIn(SMCCategory::battery, "ZZZZ"), readingIn(SMCCategory::cpu, "BBBB")}),
        (std::vector<std::string>{"ZZZZ", "BBBB", "AAAA"}));
}

TEST(SortedByCategoryAndKey, NumbersInKeysCompareByValue) {
    EXPECT_EQ(keysByCategoryAndKey({readingIn(SMCCategory::cpu, "TC10C"), readingIn(SMCCategory::cpu, "TC2C"),
                                    readingIn(SMCCategory::cpu, "TC1C")}),
              (std::vector<std::string>{"TC1C", "TC2C", "TC10C"}));
}

TEST(SortedByCategoryAndKey, KeysThatCompareEqualKeepTheirOrder) {
    EXPECT_EQ(keysByCategoryAndKey({readingIn(SMCCategory::cpu, "TC0p"), readingIn(SMCCategory::cpu, "TC0P"),
                                    readingIn(SMCCategory::cpu, "TC0C")}),
              (std::vector<std::string>{"TC0C", "TC0p", "TC0P"}));
    EXPECT_EQ(keysByCategoryAndKey({readingIn(SMCCategory::cpu, "TC0P"), readingIn(SMCCategory::cpu, "TC0p"),
                                    readingIn(SMCCategory::cpu, "TC0C")}),
              (std::vector<std::string>{"TC0C", "TC0P", "TC0p"}));
}

TEST(SortedByCategoryAndKey, EveryFieldTravelsWithItsKey) {
    const SMCReading first{.key = "TC0P",
                           .name = "CPU Proximity",
                           .category = SMCCategory::cpu,
                           .type = "sp78",
                           .value = "40",
                           .numericValue = 40,
                           .unit = "°C",
                           .raw = "2800",
                           .status = "OK"};
    SMCReading second = first;
    second.key = "TC1P";
    second.status = "stale";
    EXPECT_EQ(sortedByCategoryAndKey({second, first}), (std::vector<SMCReading>{first, second}));
}

TEST(SortedByKey, TheCategoryDoesNotCount) {
    EXPECT_EQ(keysByKey({readingIn(SMCCategory::battery, "ZZZZ"), readingIn(SMCCategory::voltages, "AAAA"),
                         readingIn(SMCCategory::cpu, "BB10"), readingIn(SMCCategory::fans, "BB2")}),
              (std::vector<std::string>{"AAAA", "BB2", "BB10", "ZZZZ"}));
}

TEST(SortedByKey, KeysThatCompareEqualKeepTheirOrder) {
    EXPECT_EQ(keysByKey({readingIn(SMCCategory::cpu, "TC0p"), readingIn(SMCCategory::cpu, "TC0P")}),
              (std::vector<std::string>{"TC0p", "TC0P"}));
}

} // namespace
} // namespace kelvinbar::reading_order_test
