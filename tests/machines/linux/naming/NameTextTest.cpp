#include "machines/linux/naming/NameText.h"

#include <gtest/gtest.h>

namespace kelvinbar::name_text_test {

namespace {

TEST(NameText, BlanksAreMadeOneAndGoAtTheEnds) {
    EXPECT_EQ(cleanedText("  Main \t fan\n"), "Main fan");
    EXPECT_EQ(cleanedText(" \n"), "");
    EXPECT_EQ(cleanedText("a\u00A0b"), "a b");
}

TEST(NameText, WhatCannotBeSeenIsTakenOut) {
    EXPECT_EQ(cleanedText("a\x01\x7F"
                          "b"),
              "a b");
    EXPECT_EQ(cleanedText("a\u0085b"), "a b");
    EXPECT_EQ(cleanedText("a\u202Eb\uFEFF"), "a b");
    EXPECT_EQ(cleanedText("T\xB0"
                          "C"),
              "TC");
}

TEST(NameText, OtherLettersStay) { EXPECT_EQ(cleanedText("Lüfter № 1 °C"), "Lüfter № 1 °C"); }

TEST(NameText, TheLastNumberHasNoLeadingZeros) {
    EXPECT_EQ(lastNumber("Tccd1"), "1");
    EXPECT_EQ(lastNumber("Esocket012 of 2 (007)"), "7");
    EXPECT_EQ(lastNumber("000"), "0");
    EXPECT_EQ(lastNumber("none"), std::nullopt);
    EXPECT_EQ(lastNumber(""), std::nullopt);
}

TEST(NameText, WordsAtTheBeginningAreWholeWordsOfAnyCase) {
    EXPECT_TRUE(beginsWithWords("GPU core", "GPU"));
    EXPECT_TRUE(beginsWithWords("gpu", "GPU"));
    EXPECT_FALSE(beginsWithWords("GPUs", "GPU"));
    EXPECT_FALSE(beginsWithWords("GP", "GPU"));
    EXPECT_FALSE(beginsWithWords("GPU", ""));
}

TEST(NameText, AModelLosesFillersBeforeItLosesItsEnd) {
    EXPECT_EQ(shortenedModel("Samsung SSD 980", 15), "Samsung SSD 980");
    EXPECT_EQ(shortenedModel("Samsung SSD 980", 11), "Samsung 980");
    EXPECT_EQ(shortenedModel("Samsung SSD 970 EVO Plus 1TB", 16), "Samsung 970 EVO");
    EXPECT_EQ(shortenedModel("KXG60ZNV512G", 6), "KXG60…");
}

TEST(NameText, ACutTextEndsInAnEllipsis) {
    EXPECT_EQ(cutText("abcdef", 6), "abcdef");
    EXPECT_EQ(cutText("abc def", 5), "abc…");
    EXPECT_EQ(cutText("ÄÖÜäöü", 4), "ÄÖÜ…");
    EXPECT_EQ(cutText("abc", 0), "");
}

} // namespace
} // namespace kelvinbar::name_text_test
