#include "machines/linux/migration/KeyPattern.h"

#include "catalogue/SMCKeyDatabase.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::key_pattern_test {

namespace {

using Key = std::optional<std::string>;
using Keys = std::vector<std::string>;

constexpr std::string_view digitsAndLetters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

KeyDigits chip(int index) { return {.chipIndex = index, .labelNumber = std::nullopt, .channelNumber = 0}; }

KeyDigits label(int number) { return {.chipIndex = 0, .labelNumber = number, .channelNumber = 0}; }

KeyDigits channel(int number) {
    return {.chipIndex = 0, .labelNumber = std::nullopt, .channelNumber = number};
}

Key firstKey(std::string_view pattern, const KeyDigits& digits = {},
             const std::set<std::string>& taken = {}) {
    return KeySearch([&](const std::string& key) { return !taken.contains(key); }).find(pattern, digits);
}

/// The keys that a pattern yields one after the other, until there are no more.
Keys allKeys(std::string_view pattern, const KeyDigits& digits = {}) {
    Keys keys;
    std::set<std::string> taken;
    KeySearch search([&](const std::string& key) { return !taken.contains(key); });
    while (const auto key = search.find(pattern, digits)) {
        if (!taken.insert(*key).second) break;
        keys.push_back(*key);
    }
    return keys;
}

TEST(KeyPattern, APatternWithoutPlaceholdersIsTheKey) {
    EXPECT_EQ(firstKey("TCPU"), "TCPU");
    EXPECT_EQ(firstKey("TCPU", {}, {"TCPU"}), std::nullopt);
}

TEST(KeyPattern, AnAtSignIsTheIndexOfTheChip) {
    EXPECT_EQ(firstKey("TG@D", {.chipIndex = 0, .labelNumber = 7, .channelNumber = 8}), "TG0D");
    EXPECT_EQ(firstKey("TG@D", {.chipIndex = 3, .labelNumber = 7, .channelNumber = 8}), "TG3D");
}

TEST(KeyPattern, AnEqualsSignIsTheNumberInTheLabel) {
    EXPECT_EQ(firstKey("TC=C", {.chipIndex = 1, .labelNumber = 5, .channelNumber = 7}), "TC5C");
    EXPECT_EQ(firstKey("TC=C", {.chipIndex = 1, .labelNumber = 0, .channelNumber = 7}), "TC0C");
}

TEST(KeyPattern, WithoutANumberInTheLabelAnEqualsSignGivesNothing) {
    EXPECT_EQ(firstKey("TC=C", {.chipIndex = 1, .labelNumber = std::nullopt, .channelNumber = 7}),
              std::nullopt);
}

TEST(KeyPattern, ANumberSignIsTheNumberOfTheChannel) {
    EXPECT_EQ(firstKey("VIN#", {.chipIndex = 1, .labelNumber = 5, .channelNumber = 7}), "VIN7");
    EXPECT_EQ(firstKey("VIN#", {.chipIndex = 1, .labelNumber = 5, .channelNumber = 0}), "VIN0");
}

TEST(KeyPattern, APercentSignIsOneLessThanTheNumberOfTheChannel) {
    EXPECT_EQ(firstKey("F%Ac", {.chipIndex = 5, .labelNumber = 6, .channelNumber = 1}), "F0Ac");
    EXPECT_EQ(firstKey("F%Ac", {.chipIndex = 5, .labelNumber = 6, .channelNumber = 4}), "F3Ac");
    EXPECT_EQ(firstKey("F%Ac", {.chipIndex = 5, .labelNumber = 6, .channelNumber = 0}), std::nullopt);
}

TEST(KeyPattern, NumbersFromTenToFifteenAreCapitalLetters) {
    EXPECT_EQ(firstKey("TG@D", chip(10)), "TGAD");
    EXPECT_EQ(firstKey("TC=C", label(15)), "TCFC");
    EXPECT_EQ(firstKey("VIN#", channel(12)), "VINC");
    EXPECT_EQ(firstKey("TM%P", channel(16)), "TMFP");
}

TEST(KeyPattern, NoNumberAboveFifteenFits) {
    EXPECT_EQ(firstKey("TG@D", chip(16)), std::nullopt);
    EXPECT_EQ(firstKey("TC=C", label(16)), std::nullopt);
    EXPECT_EQ(firstKey("TC=C", label(2147483647)), std::nullopt);
    EXPECT_EQ(firstKey("VIN#", channel(16)), std::nullopt);
    EXPECT_EQ(firstKey("TM%P", channel(17)), std::nullopt);
    EXPECT_EQ(firstKey("TN@+", chip(16)), std::nullopt);
}

TEST(KeyPattern, APlusIsTheFirstFreeDigit) {
    EXPECT_EQ(firstKey("TC+C"), "TC0C");
    EXPECT_EQ(firstKey("TC+C", {}, {"TC0C", "TC1C", "TC3C"}), "TC2C");
    EXPECT_EQ(allKeys("TC+C"), (Keys{"TC0C", "TC1C", "TC2C", "TC3C", "TC4C", "TC5C", "TC6C", "TC7C", "TC8C",
                                     "TC9C", "TCAC", "TCBC", "TCCC", "TCDC", "TCEC", "TCFC"}));
}

TEST(KeyPattern, ACaretIsTheFirstFreeDigitFromOneOn) {
    EXPECT_EQ(firstKey("TM^P"), "TM1P");
    EXPECT_EQ(firstKey("TM^P", {}, {"TM1P"}), "TM2P");
    EXPECT_EQ(allKeys("TM^P"), (Keys{"TM1P", "TM2P", "TM3P", "TM4P", "TM5P", "TM6P", "TM7P", "TM8P", "TM9P",
                                     "TMAP", "TMBP", "TMCP", "TMDP", "TMEP", "TMFP"}));
}

TEST(KeyPattern, PlaceholdersStandTogetherInAKey) {
    EXPECT_EQ(firstKey("TN@=", {.chipIndex = 1, .labelNumber = 2}), "TN12");
    EXPECT_EQ(firstKey("TN@+", chip(1)), "TN10");
    EXPECT_EQ(firstKey("TN@+", chip(1), {"TN10", "TN11"}), "TN12");
}

TEST(KeyPattern, KeysThatTheCatalogueCannotNameArePassedOver) {
    ASSERT_EQ(SMCKeyDatabase::hwMonitorDefinition("FAAc"), std::nullopt);
    EXPECT_EQ(firstKey("F%Ac", channel(11)), std::nullopt);
    EXPECT_EQ(allKeys("F+Ac"),
              (Keys{"F0Ac", "F1Ac", "F2Ac", "F3Ac", "F4Ac", "F5Ac", "F6Ac", "F7Ac", "F8Ac", "F9Ac"}));
    EXPECT_EQ(firstKey("ZZZZ"), std::nullopt);
    EXPECT_EQ(firstKey("ZZ++"), std::nullopt);
}

TEST(KeyPattern, ADoublePlusIsTheFirstFreePair) {
    EXPECT_EQ(firstKey("TA++"), "TA00");
    EXPECT_EQ(firstKey("TA++", {}, {"TA00", "TA01", "TA03"}), "TA02");
}

TEST(KeyPattern, PairsAreTriedDigitsBeforeLettersAndTheLastCharacterFirst) {
    const auto firstOf = [](const std::set<std::string>& free) {
        return KeySearch([&](const std::string& key) { return free.contains(key); }).find("TL++", {});
    };
    EXPECT_EQ(firstOf({"TL0A", "TL09"}), "TL09");
    EXPECT_EQ(firstOf({"TL10", "TL0Z"}), "TL0Z");
    EXPECT_EQ(firstOf({"TLA0", "TL9Z"}), "TL9Z");
    EXPECT_EQ(firstOf({"TLZZ", "TLZY"}), "TLZY");
    EXPECT_EQ(firstOf({"TLZZ"}), "TLZZ");
    EXPECT_EQ(firstOf({"TL0a", "TL--"}), std::nullopt);
}

TEST(KeyPattern, ADoublePlusPassesOverKeysThatTheTableNames) {
    for (const std::string key :
         {"TA0P", "TA0S", "TAUX", "TAMB", "TP0P", "TPCD", "PCPR", "VIN0", "TM1P", "TN0D"}) {
        SCOPED_TRACE(key);
        ASSERT_TRUE(SMCKeyDatabase::byKey().contains(key));
        const auto isFree = [&](const std::string& candidate) { return candidate == key; };
        EXPECT_EQ(KeySearch(isFree).find(key, {}), key);
        EXPECT_EQ(KeySearch(isFree).find(key.substr(0, 2) + "++", {}), std::nullopt);
    }
}

TEST(KeyPattern, ADoublePlusGivesEveryOtherPairOnce) {
    Keys expected;
    for (const char first : digitsAndLetters) {
        for (const char second : digitsAndLetters) {
            const std::string key{'T', 'A', first, second};
            if (!SMCKeyDatabase::byKey().contains(key)) expected.push_back(key);
        }
    }
    EXPECT_EQ(allKeys("TA++"), expected);
}

TEST(KeyPattern, WhenEveryKeyIsTakenThereIsNone) {
    const auto nothingIsFree = [](const std::string&) { return false; };
    for (const std::string_view pattern : {"TCPU", "TC+C", "TM^P", "TA++", "TG@D"}) {
        SCOPED_TRACE(pattern);
        EXPECT_EQ(KeySearch(nothingIsFree).find(pattern, {}), std::nullopt);
    }
}

TEST(KeyPattern, AKeyThatIsTakenIsAskedAboutOnce) {
    std::set<std::string> taken;
    std::size_t questions = 0;
    KeySearch search([&](const std::string& key) {
        ++questions;
        return !taken.contains(key);
    });
    while (const auto key = search.find("TA++", {})) taken.insert(*key);
    const std::size_t pairs = digitsAndLetters.size() * digitsAndLetters.size();
    ASSERT_GT(taken.size(), pairs / 2);
    EXPECT_LE(questions, pairs + taken.size()); // once free, once taken
    questions = 0;
    EXPECT_EQ(search.find("TA++", {}), std::nullopt);
    EXPECT_EQ(questions, 0u);
}

TEST(KeyPattern, DigitsMakeAPatternOfTheirOwn) {
    std::set<std::string> taken;
    KeySearch search([&](const std::string& key) { return !taken.contains(key); });
    ASSERT_EQ(search.find("TN@+", chip(1)), "TN10");
    taken.insert("TN10");
    EXPECT_EQ(search.find("TN@+", chip(1)), "TN11");
    EXPECT_EQ(search.find("TN@+", chip(2)), "TN20");
}

} // namespace
} // namespace kelvinbar::key_pattern_test
