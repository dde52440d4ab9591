#include "catalogue/SMCReading.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::smc_reading_test {
namespace {

using testing::ElementsAre;
using testing::Pointee;
using testing::SizeIs;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

SMCReading cpuTemperature() {
    return {.key = "TC0P",
            .name = "CPU Proximity",
            .category = SMCCategory::cpu,
            .type = "sp78",
            .value = "71.5",
            .numericValue = 71.5,
            .unit = "°C",
            .raw = "47 80",
            .status = "OK"};
}

std::vector<std::string> keysOf(const Dictionary& record) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : record) keys.push_back(key);
    return keys;
}

std::size_t hashOf(const SMCReading& reading) { return std::hash<SMCReading>()(reading); }

std::string displayed(std::string_view value, std::string_view unit) {
    SMCReading reading = cpuTemperature();
    reading.value = value;
    reading.unit = unit;
    return reading.displayValue();
}

bool isDisplayable(std::string_view value, std::optional<double> number, std::string_view raw = "00") {
    SMCReading reading = cpuTemperature();
    reading.value = value;
    reading.numericValue = number;
    reading.raw = raw;
    return reading.hasDisplayableValue();
}

/// `cpuTemperature()` with each of its nine fields changed in turn.
std::vector<std::pair<std::string, SMCReading>> readingsChangedInOneField() {
    std::vector<std::pair<std::string, SMCReading>> changed;
    const auto change = [&](std::string field, const std::function<void(SMCReading&)>& apply) {
        SMCReading reading = cpuTemperature();
        apply(reading);
        changed.emplace_back(std::move(field), std::move(reading));
    };
    change("key", [](SMCReading& reading) { reading.key = "TC0p"; });
    change("name", [](SMCReading& reading) { reading.name = "CPU"; });
    change("category", [](SMCReading& reading) { reading.category = SMCCategory::gpu; });
    change("type", [](SMCReading& reading) { reading.type = "ui16"; });
    change("value", [](SMCReading& reading) { reading.value = "71.50"; });
    change("another number", [](SMCReading& reading) { reading.numericValue = 71.25; });
    change("no number", [](SMCReading& reading) { reading.numericValue.reset(); });
    change("unit", [](SMCReading& reading) { reading.unit = "W"; });
    change("raw", [](SMCReading& reading) { reading.raw = "47 81"; });
    change("status", [](SMCReading& reading) { reading.status = ""; });
    return changed;
}

TEST(SMCReading, HasItsKeyAsIdentity) { EXPECT_EQ(cpuTemperature().id(), "TC0P"); }

TEST(SMCReading, IsEqualToAReadingWithTheSameFields) {
    EXPECT_EQ(cpuTemperature(), cpuTemperature());
    EXPECT_EQ(hashOf(cpuTemperature()), hashOf(cpuTemperature()));
}

TEST(SMCReading, DiffersInEqualityAndHashByEachField) {
    for (const auto& [field, reading] : readingsChangedInOneField()) {
        SCOPED_TRACE(field);
        EXPECT_NE(reading, cpuTemperature());
        EXPECT_NE(hashOf(reading), hashOf(cpuTemperature()));
    }
}

TEST(SMCReading, IsUnequalButTheSameItemWhenOnlyItsStatusDiffers) {
    SMCReading other = cpuTemperature();
    other.status = "Stale";
    EXPECT_NE(other, cpuTemperature());
    EXPECT_NE(hashOf(other), hashOf(cpuTemperature()));
    EXPECT_EQ(other.id(), cpuTemperature().id());
}

TEST(SMCReading, HashesItsFieldsInTheirOrder) {
    SMCReading swapped = cpuTemperature();
    std::swap(swapped.raw, swapped.status);
    EXPECT_NE(hashOf(swapped), hashOf(cpuTemperature()));
}

TEST(SMCReading, DistinguishesNoNumberFromZero) {
    SMCReading zero = cpuTemperature();
    zero.numericValue = 0;
    SMCReading absent = cpuTemperature();
    absent.numericValue.reset();
    EXPECT_NE(zero, absent);
    EXPECT_NE(hashOf(zero), hashOf(absent));
}

TEST(SMCReading, HashesNegativeZeroAsZero) {
    SMCReading zero = cpuTemperature();
    zero.numericValue = 0.0;
    SMCReading negativeZero = cpuTemperature();
    negativeZero.numericValue = -0.0;
    EXPECT_EQ(zero, negativeZero);
    EXPECT_EQ(hashOf(zero), hashOf(negativeZero));
}

TEST(SMCReadingDisplayValue, IsTheTrimmedValueOneSpaceAndTheUnit) {
    EXPECT_EQ(displayed("  71.5 ", "°C"), "71.5 °C");
    EXPECT_EQ(displayed("1200", "RPM"), "1200 RPM");
}

TEST(SMCReadingDisplayValue, AddsNoUnitToAValueThatEndsWithIt) {
    EXPECT_EQ(displayed("45 °C", "°C"), "45 °C");
    EXPECT_EQ(displayed("45°C", "°C"), "45°C");
    EXPECT_EQ(displayed(" 45 °C\n", " °C "), "45 °C");
}

TEST(SMCReadingDisplayValue, IsTheTrimmedValueWithoutAUnit) {
    EXPECT_EQ(displayed(" 12 ", ""), "12");
    EXPECT_EQ(displayed(" 12 ", " \t\n"), "12");
    EXPECT_EQ(displayed("", ""), "");
}

TEST(SMCReadingDisplayValue, TrimsTheUnitAndEveryKindOfWhiteSpace) {
    EXPECT_EQ(displayed("\u00A071.5\u2028", "\r\n °C \u3000"), "71.5 °C");
}

TEST(SMCReadingDisplayValue, ComparesTheEndOfTheValueByPlainSuffix) {
    EXPECT_EQ(displayed("12 a", "A"), "12 a A");     // case counts
    EXPECT_EQ(displayed("000A", "A"), "000A");       // the letter is a digit of the value, but a suffix
    EXPECT_EQ(displayed("5 mAh", "Ah"), "5 mAh");    // a part of a longer unit is a suffix too
    EXPECT_EQ(displayed("°C 45", "°C"), "°C 45 °C"); // in front it does not count
    EXPECT_EQ(displayed("", "W"), " W");
}

TEST(SMCReadingDisplayability, RejectsAnEmptyValueWhateverTheNumber) {
    for (const std::string_view value : {"", " ", "\t\r\n", "\u00A0\u3000"}) {
        EXPECT_FALSE(isDisplayable(value, 12)) << testing::PrintToString(value);
        EXPECT_FALSE(isDisplayable(value, std::nullopt)) << testing::PrintToString(value);
    }
}

TEST(SMCReadingDisplayability, RejectsThePlaceholdersInAnyLetterCaseWhateverTheNumber) {
    for (const std::string_view value :
         {"—",           "-",           "--",          "---",      "n/a",      "N/A",   "n/A",  "na",
          "NA",          "nan",         "NaN",         "null",     "NULL",     "nil",   "Nil",  "unsupported",
          "Unsupported", "unavailable", "UNAVAILABLE", "no value", "No Value", " n/a ", "\n—\t"}) {
        EXPECT_FALSE(isDisplayable(value, 12)) << value;
        EXPECT_FALSE(isDisplayable(value, std::nullopt)) << value;
    }
}

TEST(SMCReadingDisplayability, AcceptsWhatOnlyResemblesAPlaceholder) {
    for (const std::string_view value : {"----", "–", "-1", "n.a.", "n / a", "nah", "nulls", "no  value",
                                         "novalue", "not available", "unavailable now", "No"}) {
        EXPECT_TRUE(isDisplayable(value, 12)) << value;
    }
}

TEST(SMCReadingDisplayability, RejectsAnyTextThatContainsNan) {
    for (const std::string_view value : {"nan(0x1)", "-nan", "1 NaN", "Finance", "banana", "nAn °C"}) {
        EXPECT_FALSE(isDisplayable(value, 12)) << value;
    }
}

TEST(SMCReadingDisplayability, RejectsAnyTextThatContainsInfBeforeTheNumberIsLookedAt) {
    for (const std::string_view value :
         {"inf", "-inf", "Infinity", "+INF", "infinite", "information", "1 inF"}) {
        EXPECT_FALSE(isDisplayable(value, 12)) << value;
    }
}

TEST(SMCReadingDisplayability, AcceptsZero) {
    EXPECT_TRUE(isDisplayable("0", 0));
    EXPECT_TRUE(isDisplayable("-0", -0.0));
}

TEST(SMCReadingDisplayability, NeedsRawBytesWithoutANumber) {
    EXPECT_TRUE(isDisplayable("12", std::nullopt, "0C"));
    EXPECT_TRUE(isDisplayable("12", std::nullopt, " 0C "));
    EXPECT_FALSE(isDisplayable("12", std::nullopt, ""));
    EXPECT_FALSE(isDisplayable("12", std::nullopt, " \n\u00A0"));
}

TEST(SMCReadingDisplayability, DoesNotLookAtRawBytesWithANumber) { EXPECT_TRUE(isDisplayable("12", 12, "")); }

TEST(SMCReadingDisplayability, RejectsANumberThatIsNotFinite) {
    EXPECT_FALSE(isDisplayable("5", infinity));
    EXPECT_FALSE(isDisplayable("5", -infinity));
    EXPECT_FALSE(isDisplayable("5", nan));
}

TEST(SMCReadingDisplayability, DoesNotLookAtTheUnitOrTheStatus) {
    SMCReading reading = cpuTemperature();
    reading.unit = "nan";
    reading.status = "unavailable";
    EXPECT_TRUE(reading.hasDisplayableValue());
    reading.value = "";
    reading.unit = "°C";
    EXPECT_FALSE(reading.hasDisplayableValue());
}

TEST(SMCReadingRecord, HasTheFieldNamesAsKeysInTheirOrder) {
    EXPECT_THAT(
        keysOf(encodedReading(cpuTemperature())),
        ElementsAre("key", "name", "category", "type", "value", "numericValue", "unit", "raw", "status"));
}

TEST(SMCReadingRecord, HoldsTheCategoryByItsTitle) {
    SMCReading reading = cpuTemperature();
    reading.category = SMCCategory::thermal;
    const Dictionary record = encodedReading(reading);
    EXPECT_THAT(record.find<std::string>("category"), Pointee(std::string("Thermal Zones")));
    EXPECT_THAT(record.find<std::string>("key"), Pointee(std::string("TC0P")));
    EXPECT_THAT(record.find<double>("numericValue"), Pointee(71.5));
}

TEST(SMCReadingRecord, HoldsANumberOnlyWhenPresent) {
    SMCReading reading = cpuTemperature();
    reading.numericValue.reset();
    const Dictionary record = encodedReading(reading);
    EXPECT_THAT(keysOf(record),
                ElementsAre("key", "name", "category", "type", "value", "unit", "raw", "status"));
}

TEST(SMCReadingRecord, DecodesToTheSameReading) {
    EXPECT_EQ(decodedReading(encodedReading(cpuTemperature())), cpuTemperature());
    EXPECT_EQ(decodedReading(encodedReading(SMCReading{})), SMCReading{});
    for (const auto& [field, reading] : readingsChangedInOneField()) {
        EXPECT_EQ(decodedReading(encodedReading(reading)), reading) << field;
    }
    for (const SMCCategory category : allCategories) {
        SMCReading reading = cpuTemperature();
        reading.category = category;
        EXPECT_EQ(decodedReading(encodedReading(reading)), reading) << rawValue(category);
    }
}

TEST(SMCReadingRecord, IsDecodedInAnyOrderAndWithFurtherEntries) {
    const Dictionary record{{"extra", true},  {"status", "OK"},          {"raw", "47 80"},
                            {"unit", "°C"},   {"value", "71.5"},         {"numericValue", 71.5},
                            {"type", "sp78"}, {"name", "CPU Proximity"}, {"category", "CPU"},
                            {"key", "TC0P"}};
    EXPECT_EQ(decodedReading(record), cpuTemperature());
}

TEST(SMCReadingRecord, IsNotDecodedWithoutARequiredEntry) {
    for (const std::string_view missing :
         {"key", "name", "category", "type", "value", "unit", "raw", "status"}) {
        Dictionary record;
        for (const auto& [key, value] : encodedReading(cpuTemperature())) {
            if (key != missing) record.set(key, value);
        }
        ASSERT_THAT(keysOf(record), SizeIs(8));
        EXPECT_EQ(decodedReading(record), std::nullopt) << missing;
    }
}

TEST(SMCReadingRecord, IsNotDecodedWithAMistypedEntry) {
    for (const std::string_view mistyped :
         {"key", "name", "category", "type", "value", "unit", "raw", "status"}) {
        Dictionary record = encodedReading(cpuTemperature());
        record.set(mistyped, 1.0);
        EXPECT_EQ(decodedReading(record), std::nullopt) << mistyped;
    }
    for (const Value& noNumber : {Value(std::string("71.5")), Value(true), Value(Data{71})}) {
        Dictionary record = encodedReading(cpuTemperature());
        record.set("numericValue", noNumber);
        EXPECT_EQ(decodedReading(record), std::nullopt) << "numericValue";
    }
}

TEST(SMCReadingRecord, IsNotDecodedWithAnUnknownCategoryTitle) {
    for (const std::string_view title : {"cpu", "CPU ", "", "Sensors"}) {
        Dictionary record = encodedReading(cpuTemperature());
        record.set("category", std::string(title));
        EXPECT_EQ(decodedReading(record), std::nullopt) << title;
    }
}

TEST(SMCReadingRecord, IsDecodedWithAWholeNumber) {
    Dictionary record = encodedReading(cpuTemperature());
    record.set("numericValue", std::int64_t{71});
    const std::optional<SMCReading> reading = decodedReading(record);
    ASSERT_TRUE(reading.has_value());
    EXPECT_EQ(reading->numericValue, 71.0);
}

} // namespace
} // namespace kelvinbar::smc_reading_test
