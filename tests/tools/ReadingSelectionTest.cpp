#include "tools/ReadingSelection.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::reading_selection_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SMCReading reading(std::string_view key, std::string_view name, SMCCategory category,
                   std::optional<double> number = 1, std::string_view unit = "°C") {
    return {.key = std::string(key),
            .name = std::string(name),
            .category = category,
            .type = {},
            .value = "1",
            .numericValue = number,
            .unit = std::string(unit),
            .raw = {},
            .status = {}};
}

std::vector<SMCReading> machine() {
    return {reading("T10", "CPU Core 10", SMCCategory::cpu, 50),
            reading("T2", "CPU Core 2", SMCCategory::cpu, 70),
            reading("F1", "Left fan", SMCCategory::fans, 900, "RPM"),
            reading("S1", "Battery Status", SMCCategory::battery, std::nullopt, "")};
}

std::vector<std::string> selectedKeys(const ReadingSelection& selection) {
    std::vector<std::string> keys;
    std::ranges::transform(selectedReadings(machine(), selection), std::back_inserter(keys),
                           &SMCReading::key);
    return keys;
}

TEST(ReadingSelection, IsEverythingByKeyWhenNothingIsAskedFor) {
    EXPECT_TRUE(ReadingSelection().isEverything());
    EXPECT_THAT(selectedKeys({}), ElementsAre("F1", "S1", "T2", "T10"));
}

TEST(ReadingSelection, KeepsTheOrderOfTheKeysThatAreAskedFor) {
    EXPECT_THAT(selectedKeys({.keys = {"T10", "F1", "T2"}}), ElementsAre("T10", "F1", "T2"));
    EXPECT_THAT(selectedKeys({.keys = {"T2", "T2"}}), ElementsAre("T2"));
}

TEST(ReadingSelection, FindsReadingsByCategory) {
    EXPECT_THAT(selectedKeys({.categories = {SMCCategory::fans, SMCCategory::battery}}),
                ElementsAre("F1", "S1"));
    EXPECT_THAT(selectedKeys({.categories = {SMCCategory::storage}}), IsEmpty());
}

TEST(ReadingSelection, FindsAPartOfTheNameOrTheKeyInAnyCase) {
    EXPECT_THAT(selectedKeys({.match = "CORE"}), ElementsAre("T2", "T10"));
    EXPECT_THAT(selectedKeys({.match = "f1"}), ElementsAre("F1"));
    EXPECT_THAT(selectedKeys({.match = "nothing"}), IsEmpty());
}

TEST(ReadingSelection, WantsAllThatIsAskedFor) {
    EXPECT_THAT(selectedKeys({.keys = {"T2", "F1"}, .categories = {SMCCategory::cpu}}), ElementsAre("T2"));
    EXPECT_THAT(selectedKeys({.categories = {SMCCategory::cpu}, .match = "10"}), ElementsAre("T10"));
}

TEST(ReadingSelection, SortsAsAsked) {
    EXPECT_THAT(selectedKeys({.keys = {"T10", "T2"}, .order = ReadingOrder::key}), ElementsAre("T2", "T10"));
    EXPECT_THAT(selectedKeys({.order = ReadingOrder::name}), ElementsAre("S1", "T2", "T10", "F1"));
    EXPECT_THAT(selectedKeys({.order = ReadingOrder::value}), ElementsAre("F1", "T2", "T10", "S1"));
    EXPECT_THAT(selectedKeys({.order = ReadingOrder::category}), ElementsAre("T2", "T10", "F1", "S1"));
}

TEST(ReadingSelection, NamesKeysWithoutAReading) {
    EXPECT_THAT(missingKeys(machine(), {.keys = {"T2", "X1", "X2"}}), ElementsAre("X1", "X2"));
    EXPECT_THAT(missingKeys(machine(), {.match = "nothing"}), IsEmpty());
}

TEST(UnmaskedKeys, AreTheKeysOfTheReadingsWhoseSnapshotHasThem) {
    const std::vector<SMCReading> readings{
        reading("enx001122334466-pci-0100/temp1", "Ethernet", SMCCategory::thermal),
        reading("enx001122334446-pci-0100/temp1", "Ethernet 2", SMCCategory::thermal), // 01, too
        reading("hid-F0T9-battery/capacity", "Mouse", SMCCategory::battery)};
    EXPECT_THAT(unmaskedKeys({"hid-xxxxxx35-battery/capacity", "enxxxxxxxxxxx01-pci-0100/temp1",
                              "enxxxxxxxxxxx02-pci-0100/temp1"},
                             readings),
                ElementsAre("hid-F0T9-battery/capacity", "enx001122334446-pci-0100/temp1",
                            "enx001122334466-pci-0100/temp1"));
    EXPECT_THAT(
        unmaskedKeys({"enxxxxxxxxxxx03-pci-0100/temp1", "hid-F0T9-battery/capacity", "TC0P"}, readings),
        ElementsAre("enxxxxxxxxxxx03-pci-0100/temp1", "hid-F0T9-battery/capacity", "TC0P"));
}

TEST(CategoryNamed, TakesAWordOrATitleInAnyCase) {
    const auto words = categoryWords();
    ASSERT_EQ(words.size(), allCategories.size());
    for (std::size_t index = 0; index < words.size(); ++index) {
        EXPECT_EQ(categoryNamed(words[index]), allCategories.at(index));
        EXPECT_EQ(categoryNamed(rawValue(allCategories.at(index))), allCategories.at(index));
    }
    EXPECT_EQ(categoryNamed("thermal ZONES"), SMCCategory::thermal);
    EXPECT_EQ(categoryNamed("toast"), std::nullopt);
    EXPECT_EQ(categoryNamed(""), std::nullopt);
}

} // namespace
} // namespace kelvinbar::reading_selection_test
