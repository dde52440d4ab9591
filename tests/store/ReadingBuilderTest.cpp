#include "store/ReadingBuilder.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A complete result for CPU Proximity.
SMCKeyResult completeResult() {
    return {{"key", "TC0P"},           {"type", "sp78"}, {"value", "45.50"},    {"raw", "2D80"},
            {"size", std::int64_t{2}}, {"status", "OK"}, {"numericValue", 45.5}};
}

SMCKeyResult resultWith(std::string_view entry, Value value) {
    SMCKeyResult result = completeResult();
    result.set(entry, std::move(value));
    return result;
}

SMCKeyResult resultWithout(std::string_view entry) {
    SMCKeyResult result;
    for (const auto& [key, value] : completeResult()) {
        if (key != entry) result.append(key, value);
    }
    return result;
}

SMCReading readingOf(const SMCKeyResult& result) { return buildReading(result).value_or(SMCReading{}); }

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
    EXPECT_EQ(buildReading(completeResult()), expected);
}

TEST(BuildReading, GivesNothingWithoutAKey) {
    EXPECT_EQ(buildReading(resultWithout("key")), std::nullopt);
    EXPECT_EQ(buildReading(resultWith("key", 4.0)), std::nullopt);
    EXPECT_EQ(buildReading({}), std::nullopt);
}

TEST(BuildReading, GivesNothingForAKeyThatTheCatalogueCannotName) {
    EXPECT_EQ(buildReading(resultWith("key", "MSSD")), std::nullopt);
}

TEST(BuildReading, FilesAResultOfCategoryFansUnderFansWhereverItsKeyBelongs) {
    EXPECT_EQ(readingOf(resultWith("category", "Fans")).category, SMCCategory::fans);
}

TEST(BuildReading, TakesTheCataloguesCategoryForOneThatIsUnknownOrNoText) {
    EXPECT_EQ(readingOf(resultWith("category", "fans")).category, SMCCategory::cpu);
    EXPECT_EQ(readingOf(resultWith("category", "Fans ")).category, SMCCategory::cpu);
    EXPECT_EQ(readingOf(resultWith("category", 4.0)).category, SMCCategory::cpu);
}

TEST(BuildReading, PrefersTheResultsNameAndUnit) {
    EXPECT_EQ(readingOf(resultWith("name", "Left Fan")).name, "Left Fan");
    EXPECT_EQ(readingOf(resultWith("unit", "RPM")).unit, "RPM");
    EXPECT_EQ(readingOf(resultWith("unit", "RPM")).value, "46");
}

TEST(BuildReading, TakesTheCataloguesNameAndUnitForMistypedOnes) {
    EXPECT_EQ(readingOf(resultWith("name", true)).name, "CPU Proximity");
    EXPECT_EQ(readingOf(resultWith("unit", 1.0)).unit, "°C");
}

TEST(BuildReading, FallsBackForMissingTexts) {
    EXPECT_EQ(readingOf(resultWithout("type")).type, "");
    EXPECT_EQ(readingOf(resultWithout("raw")).raw, "");
    EXPECT_EQ(readingOf(resultWithout("status")).status, "OK");
}

TEST(BuildReading, FallsBackForMistypedTexts) {
    EXPECT_EQ(readingOf(resultWith("type", std::int64_t{1})).type, "");
    EXPECT_EQ(readingOf(resultWith("raw", Data{1})).raw, "");
    EXPECT_EQ(readingOf(resultWith("status", false)).status, "OK");
}

TEST(BuildReading, ShowsTheValueTextWhenTheNumberIsMissingMistypedOrNotFinite) {
    for (const SMCKeyResult& result :
         {resultWithout("numericValue"), resultWith("numericValue", "45.5"), resultWith("numericValue", true),
          resultWith("numericValue", infinity), resultWith("numericValue", notANumber)}) {
        EXPECT_EQ(readingOf(result).value, "45.50");
        EXPECT_EQ(readingOf(result).numericValue, std::nullopt);
    }
}

TEST(BuildReading, HasAnEmptyValueWhenThereIsNeitherNumberNorText) {
    SMCKeyResult result = resultWithout("numericValue");
    result.set("value", 45.5);
    EXPECT_EQ(readingOf(result).value, "");
}

TEST(BuildReading, CountsAWholeNumber) {
    EXPECT_EQ(readingOf(resultWith("numericValue", std::int64_t{46})).numericValue, 46);
}

SMCKeyResult keyed(std::string_view key, std::string_view value) {
    return {{"key", std::string(key)}, {"value", std::string(value)}};
}

/// The value of the only result.
std::string onlyValue(const std::vector<SMCKeyResult>& results) {
    return results.size() == 1 ? results.front().textOr("value", "") : "not one result";
}

TEST(MergedResults, IgnoresKeysThatAreNotFourCharactersLong) {
    const auto merged = mergedResults({keyed("TC0", "1"), keyed("TC0PP", "2"), keyed("", "3"), {}},
                                      {keyed("FAN", "4"), keyed("FAN10", "5"), {{"key", 4.0}}});
    EXPECT_EQ(merged.size(), 0U);
}

TEST(MergedResults, CountsCharactersAndNotBytes) {
    EXPECT_EQ(mergedResults({keyed("B0é°", "1")}, {}).size(), 1U);
    EXPECT_EQ(mergedResults({keyed("B°°", "1")}, {}).size(), 0U);
}

TEST(MergedResults, KeepsTheLastCandidateOfAKey) {
    const auto merged = mergedResults({keyed("TC0P", "1"), keyed("TC0P", "2")}, {});
    EXPECT_EQ(onlyValue(merged), "2");
}

TEST(MergedResults, KeepsTheLastCandidateOfEveryKey) {
    const auto merged = mergedResults({keyed("TC1P", "1"), keyed("TC0P", "2"), keyed("TC1P", "3"),
                                       keyed("TC0P", "4"), keyed("TC1P", "5"), keyed("TC2P", "6")},
                                      {});
    std::string values;
    for (const SMCKeyResult& result : merged) values += result.textOr("value", "");
    EXPECT_EQ(values, "456");
}

TEST(MergedResults, AreInCodeUnitOrder) {
    const auto merged = mergedResults({keyed("TC0p", "1"), keyed("TC0P", "2"), keyed("B0AV", "3")}, {});
    std::string order;
    for (const SMCKeyResult& result : merged) order += result.textOr("key", "");
    EXPECT_EQ(order, "B0AVTC0PTC0p");
}

SMCKeyResult numbered(std::string_view value, Value number) {
    SMCKeyResult result = keyed("F0Ac", value);
    result.set("numericValue", std::move(number));
    return result;
}

TEST(MergedResults, KeepAFanThatTheControllerAnsweredWithAFiniteNumber) {
    for (const Value& number : {Value(0.0), Value(std::int64_t{1200})}) {
        const auto merged = mergedResults({numbered("controller", number)}, {numbered("registry", 900.0)});
        EXPECT_EQ(onlyValue(merged), "controller");
    }
}

TEST(MergedResults, TakeTheRegistrysFanForOneWithoutAFiniteNumber) {
    for (const SMCKeyResult& answer : {keyed("F0Ac", "controller"), numbered("controller", infinity),
                                       numbered("controller", notANumber), numbered("controller", "1200")}) {
        const auto merged = mergedResults({answer}, {numbered("registry", 900.0)});
        EXPECT_EQ(onlyValue(merged), "registry");
    }
}

TEST(MergedResults, KeepTheFirstOfTwoRegistryFansWithNumbers) {
    const auto merged = mergedResults({}, {numbered("first", 900.0), numbered("second", 901.0)});
    EXPECT_EQ(onlyValue(merged), "first");
}

} // namespace

} // namespace kelvinbar
