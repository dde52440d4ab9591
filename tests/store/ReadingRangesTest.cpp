#include "store/ReadingRanges.h"

#include "tests/store/StoreFixture.h"

#include <limits>

#include <gtest/gtest.h>

namespace kelvinbar::reading_ranges_test {

namespace {

using fakes::StoreFixture;
using fakes::temperatureKey;

SMCReading readingOf(const std::string& key, std::optional<double> number) {
    SMCReading reading;
    reading.key = key;
    reading.numericValue = number;
    return reading;
}

TEST(ReadingRanges, TellLowestHighestAndMean) {
    ReadingRanges ranges;
    for (const double value : {40.0, 70.0, 46.0}) ranges.record({readingOf("TC0P", value)});
    const auto range = ranges.range("TC0P");
    ASSERT_TRUE(range.has_value());
    EXPECT_EQ(range->lowest, 40);
    EXPECT_EQ(range->highest, 70);
    EXPECT_EQ(range->mean(), 52);
}

TEST(ReadingRanges, HoldValuesBelowZero) {
    ReadingRanges ranges;
    for (const double value : {-3.0, -9.0}) ranges.record({readingOf("IB0R", value)});
    EXPECT_EQ(ranges.range("IB0R")->lowest, -9);
    EXPECT_EQ(ranges.range("IB0R")->highest, -3);
}

TEST(ReadingRanges, AreOfEachKeyAlone) {
    ReadingRanges ranges;
    ranges.record({readingOf("TC0P", 40), readingOf("TC1C", 60)});
    EXPECT_EQ(ranges.range("TC0P")->highest, 40);
    EXPECT_EQ(ranges.range("TC1C")->lowest, 60);
    EXPECT_FALSE(ranges.range("TC2C").has_value());
}

TEST(ReadingRanges, IgnoreReadingsWithoutAFiniteNumber) {
    ReadingRanges ranges;
    ranges.record({readingOf("K001", std::nullopt),
                   readingOf("K002", std::numeric_limits<double>::infinity()),
                   readingOf("K003", std::numeric_limits<double>::quiet_NaN())});
    for (const char* const key : {"K001", "K002", "K003"}) EXPECT_FALSE(ranges.range(key).has_value()) << key;
}

struct StoreRanges : StoreFixture {};

TEST_F(StoreRanges, RecordFullPassesAndPassesOverThePins) {
    makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TC1C", 50)});
    store->setMenuBarKeys({"TC0P"});
    fakes::setKeys(driver(), {temperatureKey("TC0P", 60), temperatureKey("TC1C", 70)});
    store->refreshMenuBarOnly();
    finishPasses();
    EXPECT_EQ(store->ranges().range("TC0P")->highest, 60);
    EXPECT_EQ(store->ranges().range("TC0P")->count, 2U);
    EXPECT_EQ(store->ranges().range("TC1C")->count, 1U) << "the pass has not read it";
    refresh();
    EXPECT_EQ(store->ranges().range("TC1C")->mean(), 60);
}

} // namespace
} // namespace kelvinbar::reading_ranges_test
