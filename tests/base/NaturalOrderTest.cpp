#include "base/NaturalOrder.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::natural_order_test {
namespace {

bool areEquivalent(std::string_view one, std::string_view other) {
    return !comesBeforeNaturally(one, other) && !comesBeforeNaturally(other, one);
}

void expectAscending(const std::vector<std::string>& texts) {
    for (std::size_t left = 0; left < texts.size(); ++left) {
        for (std::size_t right = left + 1; right < texts.size(); ++right) {
            EXPECT_TRUE(comesBeforeNaturally(texts[left], texts[right]))
                << texts[left] << " < " << texts[right];
            EXPECT_FALSE(comesBeforeNaturally(texts[right], texts[left]))
                << texts[right] << " < " << texts[left];
        }
    }
}

constexpr std::size_t sampleCount = 2000;

/// Short random texts over few characters: many of them share prefixes or differ only in case or in zeros.
std::vector<std::string> randomTexts() {
    constexpr std::array<std::string_view, 10> alphabet{"0", "1", "9", "a", "A", "b", "C", "-", " ", "°"};
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts in every run
    std::uniform_int_distribution<std::size_t> anyLength(0, 7);
    std::uniform_int_distribution<std::size_t> anyIndex(0, alphabet.size() - 1);
    std::vector<std::string> texts(sampleCount);
    for (std::string& text : texts) {
        for (std::size_t length = anyLength(random); length > 0; --length)
            text += alphabet.at(anyIndex(random));
    }
    return texts;
}

/// A text that compares by plain bytes as `text` compares naturally, as long as no run has over 20 digits.
std::string comparableText(std::string_view text) {
    std::string comparable;
    std::string run;
    const auto endRun = [&] {
        if (!run.empty()) comparable += std::string(20 - run.size(), '0') + run;
        run.clear();
    };
    for (const char character : text) {
        if (character >= '0' && character <= '9') {
            run += character;
            continue;
        }
        endRun();
        const bool isUpper = character >= 'A' && character <= 'Z';
        comparable += isUpper ? static_cast<char>(character + ('a' - 'A')) : character;
    }
    endRun();
    return comparable;
}

using Row = std::bitset<sampleCount>;

/// For each text, the texts that it comes before.
std::vector<Row> comparisonsOf(const std::vector<std::string>& texts) {
    std::vector<Row> comesBefore(texts.size());
    for (std::size_t left = 0; left < texts.size(); ++left) {
        for (std::size_t right = 0; right < texts.size(); ++right) {
            comesBefore[left][right] = comesBeforeNaturally(texts[left], texts[right]);
        }
    }
    return comesBefore;
}

TEST(NaturalOrder, ComparesRunsOfDigitsByValue) {
    expectAscending({"Core 0", "Core 1", "Core 2", "Core 9", "Core 10", "Core 11", "Core 100"});
    expectAscending({"F2Ac", "F9Ac", "F10Ac"});
    expectAscending({"3.3V", "3.12V", "12V"});
}

TEST(NaturalOrder, ComparesRunsOfAnyLength) {
    const std::string nines(400, '9');
    const std::string oneAndZeros = "1" + std::string(400, '0');
    expectAscending({"7", "18446744073709551615", "18446744073709551616", nines.substr(1) + "8", nines,
                     oneAndZeros, oneAndZeros + "0"});
}

TEST(NaturalOrder, IgnoresLeadingZeros) {
    EXPECT_TRUE(areEquivalent("7", "007"));
    EXPECT_TRUE(areEquivalent("Fan 07 Mode", "Fan 7 Mode"));
    EXPECT_TRUE(areEquivalent("0", std::string(300, '0')));
    EXPECT_TRUE(areEquivalent(std::string(500, '0') + "12", "12"));
    expectAscending({"a0", "a001", "a02", "a3", "a0010"});
}

TEST(NaturalOrder, DecidesAfterEqualRunsByWhatFollows) {
    expectAscending({"01a", "1b", "001c"});
    expectAscending({"1.5", "01.10"});
}

TEST(NaturalOrder, ComparesOtherCharactersWithoutCase) {
    EXPECT_TRUE(areEquivalent("TC0P", "TC0p"));
    EXPECT_TRUE(areEquivalent("abc", "ABC"));
    expectAscending({"a", "B", "c", "D"});
}

TEST(NaturalOrder, PlacesTheCharactersBetweenTheCasesBeforeTheLetters) {
    expectAscending({"[", "_", "`", "A", "b"}); // by the lower-cased letters, not by the upper-cased ones
}

TEST(NaturalOrder, ComparesOtherCharactersByCodePoint) {
    // Each pair is one where bytes as signed numbers, UTF-16 units or the length would decide otherwise.
    expectAscending({" ", "+", "-", "/", "0", "9", ":", "A", "z", "°", "—", "\uFFFD", "\U0001F600"});
}

TEST(NaturalOrder, PutsAPrefixFirst) {
    expectAscending({"", " ", "A", "a ", "a1", "A1b", "a1b0"});
    EXPECT_TRUE(comesBeforeNaturally("CPU", "cpu 1"));
}

TEST(NaturalOrder, DoesNotPutATextBeforeItself) {
    for (const std::string text : {"", "a", "7", "007", "Fan 10 Minimum", "°", "\xFF"}) {
        EXPECT_FALSE(comesBeforeNaturally(text, text)) << text;
    }
}

TEST(NaturalOrder, AgreesWithPaddedRunsAndFoldedLettersOnRandomTexts) {
    const std::vector<std::string> texts = randomTexts();
    for (std::size_t left = 0; left < texts.size(); left += 2) {
        const std::string comparableLeft = comparableText(texts[left]);
        for (std::size_t right = 1; right < texts.size(); right += 2) {
            ASSERT_EQ(comesBeforeNaturally(texts[left], texts[right]),
                      comparableLeft < comparableText(texts[right]))
                << testing::PrintToString(texts[left]) << " < " << testing::PrintToString(texts[right]);
        }
    }
}

TEST(NaturalOrder, IsAStrictWeakOrdering) {
    const std::vector<std::string> texts = randomTexts();
    const std::vector<Row> comesBefore = comparisonsOf(texts);
    std::vector<Row> comesAfter(texts.size());
    for (std::size_t left = 0; left < texts.size(); ++left) {
        for (std::size_t right = 0; right < texts.size(); ++right)
            comesAfter[right][left] = comesBefore[left][right];
    }
    const auto equivalents = [&](std::size_t index) { return ~(comesBefore[index] | comesAfter[index]); };

    for (std::size_t left = 0; left < texts.size(); ++left) {
        ASSERT_FALSE(comesBefore[left][left]) << "irreflexive: " << texts[left];
        ASSERT_TRUE((comesBefore[left] & comesAfter[left]).none()) << "asymmetric: " << texts[left];
        const Row equivalentToLeft = equivalents(left);
        for (std::size_t right = 0; right < texts.size(); ++right) {
            if (comesBefore[left][right]) {
                // What comes after the right one comes after the left one.
                ASSERT_TRUE((comesBefore[right] & ~comesBefore[left]).none())
                    << "transitive: " << texts[left] << " < " << texts[right];
            } else if (equivalentToLeft[right]) {
                ASSERT_EQ(equivalentToLeft, equivalents(right))
                    << "equivalence transitive: " << texts[left] << " ~ " << texts[right];
            }
        }
    }
}

TEST(NaturalOrder, CaseDoesNotCountInLettersBeyondAscii) {
    const std::array<std::pair<std::string_view, std::string_view>, 9> pairs{{{"É", "é"},
                                                                              {"Þ", "þ"},
                                                                              {"Ā", "ā"},
                                                                              {"Ŀ", "ŀ"},
                                                                              {"Š", "š"},
                                                                              {"Ž", "ž"},
                                                                              {"Ω", "ω"},
                                                                              {"Ж", "ж"},
                                                                              {"Ё", "ё"}}};
    for (const auto& [upper, lower] : pairs) EXPECT_TRUE(areEquivalent(upper, lower)) << upper;
    expectAscending({"cœur", "zone", "Été", "été 1", "ÉTÉ 2", "жар"});
}

TEST(NaturalOrder, SignsAmongLettersAreNoLetters) {
    EXPECT_FALSE(areEquivalent("×", "÷"));
    EXPECT_FALSE(areEquivalent("°", "Ð"));
}

TEST(NaturalOrder, ABrokenByteIsNoLetterAndComesLast) {
    EXPECT_FALSE(areEquivalent("\xC9", "É"));
    EXPECT_TRUE(comesBeforeNaturally("\xF0\x9F\x8C\xA1", "\xC9"));
}

} // namespace
} // namespace kelvinbar::natural_order_test
