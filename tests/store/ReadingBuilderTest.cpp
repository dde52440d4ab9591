#include "store/ReadingBuilder.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::reading_builder_test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// The result of a controller for CPU Proximity.
RawReading controllerResult() {
    return {.key = "TC0P",
            .type = "sp78",
            .value = "45.50",
            .numericValue = 45.5,
            .raw = "2D80",
            .size = 2,
            .status = "OK",
            .name = std::nullopt,
            .category = std::nullopt,
            .unit = std::nullopt};
}

/// The result of a source that names its own readings.
RawReading selfNamedResult() {
    return {.key = "k10temp-pci-00c3/temp1",
            .type = "hwmon",
            .value = "45.5",
            .numericValue = 45.5,
            .raw = "45500",
            .size = 0,
            .status = "OK",
            .name = "Tctl",
            .category = "CPU",
            .unit = "°C"};
}

RawReading keyed(std::string key, std::string value) {
    RawReading result;
    result.key = std::move(key);
    result.value = std::move(value);
    return result;
}

template <typename Field, typename FieldValue>
RawReading changed(RawReading result, Field RawReading::* field, FieldValue&& value) {
    result.*field = std::forward<FieldValue>(value);
    return result;
}

template <typename Field, typename FieldValue>
RawReading resultWith(Field RawReading::* field, FieldValue&& value) {
    return changed(controllerResult(), field, std::forward<FieldValue>(value));
}

SMCReading readingOf(RawReading result) { return buildReading(std::move(result)).value_or(SMCReading{}); }

TEST(BuildReading, TakesEveryFieldFromACompleteResult) {
    const SMCReading expected{.key = "TC0P",
                              .name = "CPU Proximity",
                              .category = SMCCategory::cpu,
                              .type = "sp78",
                              .value = "45.50",
                              .numericValue = 45.5,
                              .unit = "°C",
                              .raw = "2D80",
                              .status = "OK"};
    EXPECT_EQ(buildReading(controllerResult()), expected);
}

TEST(BuildReading, ReturnsNothingWithoutAKey) {
    EXPECT_EQ(buildReading(resultWith(&RawReading::key, "")), std::nullopt);
    EXPECT_EQ(buildReading({}), std::nullopt);
}

TEST(BuildReading, ReturnsNothingForAKeyThatTheCatalogueCannotName) {
    EXPECT_EQ(buildReading(resultWith(&RawReading::key, "MSSD")), std::nullopt);
}

TEST(BuildReading, FilesAResultOfCategoryFansUnderFansWhereverItsKeyBelongs) {
    EXPECT_EQ(readingOf(resultWith(&RawReading::category, "Fans")).category, SMCCategory::fans);
}

TEST(BuildReading, TakesTheCataloguesCategoryForOneThatIsUnknown) {
    for (const std::string category : {"fans", "Fans ", ""}) {
        SCOPED_TRACE(category);
        EXPECT_EQ(readingOf(resultWith(&RawReading::category, category)).category, SMCCategory::cpu);
    }
}

TEST(BuildReading, PrefersTheResultsNameAndUnit) {
    EXPECT_EQ(readingOf(resultWith(&RawReading::name, "Left Fan")).name, "Left Fan");
    EXPECT_EQ(readingOf(resultWith(&RawReading::unit, "RPM")).unit, "RPM");
    EXPECT_EQ(readingOf(resultWith(&RawReading::unit, "RPM")).value, "46");
}

TEST(BuildReading, TakesTheCataloguesNameAndUnitWhereTheResultHasNone) {
    EXPECT_EQ(readingOf(resultWith(&RawReading::unit, "RPM")).name, "CPU Proximity");
    EXPECT_EQ(readingOf(resultWith(&RawReading::name, "Left Fan")).unit, "°C");
}

TEST(BuildReading, AnEmptyNameAndUnitOfTheResultCount) {
    EXPECT_EQ(readingOf(resultWith(&RawReading::name, "")).name, "");
    EXPECT_EQ(readingOf(resultWith(&RawReading::unit, "")).unit, "");
}

TEST(BuildReading, FallsBackForMissingTexts) {
    const SMCReading reading = readingOf(keyed("TC0P", ""));
    EXPECT_EQ(reading.type, "");
    EXPECT_EQ(reading.raw, "");
    EXPECT_EQ(reading.status, "OK");
}

TEST(BuildReading, KeepsTheStatusOfTheResult) {
    EXPECT_EQ(readingOf(resultWith(&RawReading::status, "Stale")).status, "Stale");
}

TEST(BuildReading, ShowsTheValueTextWhenTheNumberIsMissingOrNotFinite) {
    for (const std::optional<double> number : {std::optional<double>(), std::optional(infinity),
                                               std::optional(-infinity), std::optional(notANumber)}) {
        const SMCReading reading = readingOf(resultWith(&RawReading::numericValue, number));
        EXPECT_EQ(reading.value, "45.50");
        EXPECT_EQ(reading.numericValue, std::nullopt);
    }
}

TEST(BuildReading, HasAnEmptyValueWhenThereIsNeitherNumberNorText) {
    EXPECT_EQ(readingOf(keyed("TC0P", "")).value, "");
}

// Sources that name their own readings

TEST(BuildSelfNamedReading, TakesEveryFieldFromTheResult) {
    const SMCReading expected{.key = "k10temp-pci-00c3/temp1",
                              .name = "Tctl",
                              .category = SMCCategory::cpu,
                              .type = "hwmon",
                              .value = "45.50",
                              .numericValue = 45.5,
                              .unit = "°C",
                              .raw = "45500",
                              .status = "OK"};
    EXPECT_EQ(buildReading(selfNamedResult()), expected);
}

TEST(BuildSelfNamedReading, ReturnsNothingWithoutANameACategoryOrAUnit) {
    for (const auto field : {&RawReading::name, &RawReading::category, &RawReading::unit}) {
        EXPECT_EQ(buildReading(changed(selfNamedResult(), field, std::nullopt)), std::nullopt);
    }
}

TEST(BuildSelfNamedReading, AnEmptyUnitIsAUnit) {
    EXPECT_EQ(readingOf(changed(selfNamedResult(), &RawReading::unit, "")).key, "k10temp-pci-00c3/temp1");
}

TEST(BuildSelfNamedReading, FilesAnUnknownCategoryUnderMiscSensors) {
    for (const std::string category : {"Chipset", "cpu", ""}) {
        SCOPED_TRACE(category);
        EXPECT_EQ(readingOf(changed(selfNamedResult(), &RawReading::category, category)).category,
                  SMCCategory::sensors);
    }
}

TEST(BuildSelfNamedReading, IsNotScaled) {
    RawReading battery = selfNamedResult();
    battery.key = "BAT0-acpi-0/in0";
    battery.category = "Battery";
    battery.unit = "V";
    battery.numericValue = 12500;
    EXPECT_EQ(readingOf(battery).value, "12500");
    EXPECT_EQ(readingOf(battery).numericValue, 12500);
}

TEST(BuildSelfNamedReading, KeepsAValueWithoutANumber) {
    RawReading state = selfNamedResult();
    state.value = "Charging";
    state.numericValue = std::nullopt;
    EXPECT_EQ(readingOf(state).value, "Charging");
}

std::string keysIn(const std::vector<RawReading>& results) {
    std::string keys;
    for (const RawReading& result : results) keys.append(keys.empty() ? "" : " ").append(result.key);
    return keys;
}

std::string valuesIn(const std::vector<RawReading>& results) {
    std::string values;
    for (const RawReading& result : results) values.append(values.empty() ? "" : " ").append(result.value);
    return values;
}

TEST(MergedResults, IgnoresKeysThatAreNotFourCharactersLong) {
    const auto merged = mergedResults({keyed("TC0", "1"), keyed("TC0PP", "2"), keyed("", "3"), {}},
                                      {keyed("FAN", "4"), keyed("FAN10", "5"), {}});
    EXPECT_EQ(keysIn(merged), "");
}

TEST(MergedResults, CountsCharactersAndNotBytes) {
    EXPECT_EQ(mergedResults({keyed("B0é°", "1")}, {}).size(), 1U);
    EXPECT_EQ(mergedResults({keyed("B°°", "1")}, {}).size(), 0U);
}

TEST(MergedResults, KeepsSelfNamedKeysOfAnyLength) {
    const auto merged =
        mergedResults({keyed("k10temp-pci-00c3/temp1", "1"), keyed("a/b", "2"), keyed("thermal/1", "3")}, {});
    EXPECT_EQ(keysIn(merged), "a/b k10temp-pci-00c3/temp1 thermal/1");
}

TEST(MergedResults, KeepsTheLastCandidateOfAKey) {
    EXPECT_EQ(valuesIn(mergedResults({keyed("TC0P", "1"), keyed("TC0P", "2")}, {})), "2");
}

TEST(MergedResults, KeepsTheLastCandidateOfEveryKey) {
    const auto merged = mergedResults({keyed("TC1P", "1"), keyed("TC0P", "2"), keyed("TC1P", "3"),
                                       keyed("TC0P", "4"), keyed("TC1P", "5"), keyed("TC2P", "6")},
                                      {});
    EXPECT_EQ(valuesIn(merged), "4 5 6");
}

TEST(MergedResults, AreInCodeUnitOrder) {
    const auto merged = mergedResults({keyed("TC0p", "1"), keyed("TC0P", "2"), keyed("B0AV", "3")}, {});
    EXPECT_EQ(keysIn(merged), "B0AV TC0P TC0p");
}

TEST(MergedResults, PutRegistryFansWhereTheirKeysBelong) {
    const auto merged = mergedResults({keyed("B0AV", "1"), keyed("TC0P", "2")},
                                      {keyed("FAN1", "3"), keyed("FAN0", "4"), keyed("A0AA", "5")});
    EXPECT_EQ(keysIn(merged), "A0AA B0AV FAN0 FAN1 TC0P");
}

RawReading numbered(std::string value, std::optional<double> number) {
    return changed(keyed("F0Ac", std::move(value)), &RawReading::numericValue, number);
}

TEST(MergedResults, KeepAFanThatTheControllerAnsweredWithAFiniteNumber) {
    for (const double number : {0.0, 1200.0}) {
        const auto merged = mergedResults({numbered("controller", number)}, {numbered("registry", 900.0)});
        EXPECT_EQ(valuesIn(merged), "controller");
    }
}

TEST(MergedResults, TakeTheRegistrysFanForOneWithoutAFiniteNumber) {
    for (const RawReading& answer : {keyed("F0Ac", "controller"), numbered("controller", infinity),
                                     numbered("controller", -infinity), numbered("controller", notANumber)}) {
        const auto merged = mergedResults({answer}, {numbered("registry", 900.0)});
        EXPECT_EQ(valuesIn(merged), "registry");
    }
}

TEST(MergedResults, KeepTheFirstOfTwoRegistryFansWithNumbers) {
    const auto merged = mergedResults({}, {numbered("first", 900.0), numbered("second", 901.0)});
    EXPECT_EQ(valuesIn(merged), "first");
}

} // namespace
} // namespace kelvinbar::reading_builder_test
