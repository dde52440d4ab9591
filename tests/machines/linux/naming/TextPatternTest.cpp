#include "machines/linux/naming/TextPattern.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::text_pattern_test {

namespace {

TEST(TextPattern, APatternWithoutSignsIsTheTextItself) {
    EXPECT_TRUE(fitsPattern("coretemp", "coretemp"));
    EXPECT_FALSE(fitsPattern("coretemp", "coretemp2"));
    EXPECT_FALSE(fitsPattern("coretemp", "xcoretemp"));
    EXPECT_FALSE(fitsPattern("coretemp", "coretem"));
}

TEST(TextPattern, LetterCaseDoesNotCount) {
    EXPECT_TRUE(fitsPattern("*CPU*", "my cpu fan"));
    EXPECT_TRUE(fitsPattern("*cpu*", "MY CPU FAN"));
    EXPECT_TRUE(fitsPattern("Package id *", "pACKAGE ID 0"));
    EXPECT_FALSE(fitsPattern("[", "{"));
    EXPECT_FALSE(fitsPattern("@", "`"));
}

TEST(TextPattern, AStarStandsForAnyTextEvenNone) {
    for (const std::string_view text : {"nvme", "nvme0", "nvme-pci-0100"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(fitsPattern("nvme*", text));
    }
    EXPECT_FALSE(fitsPattern("nvme*", "nvm"));
    EXPECT_FALSE(fitsPattern("nvme*", "anvme"));
    EXPECT_TRUE(fitsPattern("*_thermal", "cpu_thermal"));
    EXPECT_FALSE(fitsPattern("*_thermal", "cpu_thermal2"));
}

TEST(TextPattern, StarsTryEveryPlace) {
    EXPECT_TRUE(fitsPattern("a*b*c", "abbbbc"));
    EXPECT_TRUE(fitsPattern("a*b*c", "abcabc"));
    EXPECT_FALSE(fitsPattern("a*b*c", "acb"));
    EXPECT_TRUE(fitsPattern("*ab", "aab"));
    EXPECT_TRUE(fitsPattern("**", ""));
    EXPECT_TRUE(fitsPattern("TSI*_TEMP", "TSI0_TEMP_TEMP"));
}

TEST(TextPattern, AQuestionMarkStandsForOneCharacter) {
    EXPECT_TRUE(fitsPattern("ath1?k*", "ath11k_hwmon"));
    EXPECT_TRUE(fitsPattern("????", "TC0D"));
    EXPECT_FALSE(fitsPattern("????", "TC0"));
    EXPECT_FALSE(fitsPattern("????", "TC0DD"));
    EXPECT_FALSE(fitsPattern("?", ""));
    EXPECT_TRUE(fitsPattern("t?sensor", "T Sensor"));
}

TEST(TextPattern, AnyAlternativeMayFit) {
    for (const std::string_view text : {"in0", "vddgfx", "SVI2_Core"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(fitsPattern("vddgfx|in0|svi2*", text));
    }
    EXPECT_FALSE(fitsPattern("vddgfx|in0|svi2*", "in00"));
    EXPECT_FALSE(fitsPattern("vddgfx|in0|svi2*", "vddgfx|in0"));
    EXPECT_FALSE(fitsPattern("vddgfx|in0", ""));
}

TEST(TextPattern, OnlyAStarOrNothingFitsAnEmptyText) {
    EXPECT_TRUE(fitsPattern("*", ""));
    EXPECT_TRUE(fitsPattern("", ""));
    EXPECT_TRUE(fitsPattern("a|*", ""));
    EXPECT_FALSE(fitsPattern("a", ""));
    EXPECT_FALSE(fitsPattern("", "a"));
}

TEST(TextPattern, SignsOfLabelsStandForThemselves) {
    EXPECT_TRUE(fitsPattern("+3.3*|3.3v*", "+3.3V"));
    EXPECT_FALSE(fitsPattern("+3.3*", "+3x3V"));
    EXPECT_FALSE(fitsPattern("+3.3*", "33V"));
    EXPECT_TRUE(fitsPattern("*cpu*", "CPU (PECI)"));
    EXPECT_TRUE(fitsPattern("CPU (PECI)", "cpu (peci)"));
    EXPECT_FALSE(fitsPattern("CPU (PECI)", "cpu peci"));
    EXPECT_FALSE(fitsPattern("T.Sensor", "T Sensor"));
    EXPECT_TRUE(fitsPattern("[a-z]\\", "[a-z]\\"));
    EXPECT_FALSE(fitsPattern("[a-z]", "b"));
}

TEST(TextPattern, SignsOfPatternsInALabelAreOrdinaryText) {
    EXPECT_TRUE(fitsPattern("*", "*?|"));
    EXPECT_FALSE(fitsPattern("CPU", "*"));
    EXPECT_FALSE(fitsPattern("CPU", "???"));
}

} // namespace
} // namespace kelvinbar::text_pattern_test
