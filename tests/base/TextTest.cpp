#include "base/Text.h"

#include <array>
#include <cstddef>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::text_test {
namespace {

/// `codePoint` by the plain encoding scheme, without any check: surrogates come out as three bytes.
std::string utf8(char32_t codePoint) {
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) return {static_cast<char>(codePoint)};
    if (codePoint < 0x800) return {static_cast<char>(0xC0U | (codePoint >> 6U)), continuation(0)};
    if (codePoint < 0x10000) {
        return {static_cast<char>(0xE0U | (codePoint >> 12U)), continuation(6), continuation(0)};
    }
    return {static_cast<char>(0xF0U | (codePoint >> 18U)), continuation(12), continuation(6),
            continuation(0)};
}

std::string bytes(std::initializer_list<unsigned> values) {
    std::string text;
    for (const unsigned value : values) text.push_back(static_cast<char>(value));
    return text;
}

/// The whole of Unicode's White_Space set.
constexpr std::array<char32_t, 25> whiteSpace{
    0x0009, 0x000A, 0x000B, 0x000C, 0x000D, 0x0020, 0x0085, 0x00A0, 0x1680, 0x2000, 0x2001, 0x2002, 0x2003,
    0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000,
};

/// Every kind of ill-formed byte sequence.
const std::vector<std::string>& illFormedTexts() {
    static const std::vector<std::string> texts{
        bytes({0x80}),                         // a lone continuation byte
        bytes({0xBF}),                         //
        bytes({0xC0, 0x80}),                   // overlong NUL
        bytes({0xC1, 0xBF}),                   // overlong U+007F
        bytes({0xE0, 0x80, 0x80}),             // overlong NUL
        bytes({0xE0, 0x9F, 0xBF}),             // overlong U+07FF
        bytes({0xF0, 0x80, 0x80, 0x80}),       // overlong NUL
        bytes({0xF0, 0x8F, 0xBF, 0xBF}),       // overlong U+FFFF
        bytes({0xED, 0xA0, 0x80}),             // U+D800, the first surrogate
        bytes({0xED, 0xBF, 0xBF}),             // U+DFFF, the last surrogate
        bytes({0xF4, 0x90, 0x80, 0x80}),       // U+110000
        bytes({0xF5, 0x80, 0x80, 0x80}),       // beyond every lead byte
        bytes({0xF8, 0x88, 0x80, 0x80, 0x80}), // a five-byte form
        bytes({0xFE}),                         //
        bytes({0xFF}),                         //
        bytes({0xC2}),                         // truncated after one byte
        bytes({0xE2}),                         //
        bytes({0xE2, 0x82}),                   // truncated after two
        bytes({0xF0}),                         //
        bytes({0xF0, 0x9F}),                   //
        bytes({0xF0, 0x9F, 0x98}),             // truncated after three
        bytes({0xC2, 0x41}),                   // a letter in place of a continuation byte
        bytes({0xE2, 0x41, 0xAC}),             //
        bytes({0xE2, 0x82, 0x41}),             //
        bytes({0xF0, 0x9F, 0x98, 0x41}),       //
        bytes({0xC2, 0xC2, 0xB0}),             // a sequence that another one interrupts
    };
    return texts;
}

TEST(Text, IsValidUtf8AtTheEndsOfEveryLength) {
    for (const char32_t codePoint : {U'\0', U'\x7F', U'\x80', U'\x7FF', U'\x800', U'\xD7FF', U'\xE000',
                                     U'\xFFFD', U'\xFFFF', U'\x10000', U'\x10FFFF'}) {
        SCOPED_TRACE(static_cast<std::size_t>(codePoint));
        EXPECT_TRUE(isValidUtf8(utf8(codePoint)));
        EXPECT_TRUE(isValidUtf8(std::string("a").append(utf8(codePoint)).append("b")));
    }
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("45 °C — 2 µs"));
}

TEST(Text, IsNoValidUtf8WithOverlongFormsSurrogatesOrTruncatedSequences) {
    for (const std::string& text : illFormedTexts()) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_FALSE(isValidUtf8(text));
        EXPECT_FALSE(isValidUtf8("well-formed °" + text));
        EXPECT_FALSE(isValidUtf8(text + "well-formed °"));
    }
}

TEST(Text, CountsCodePointsNotBytes) {
    EXPECT_EQ(characterCount(""), 0U);
    EXPECT_EQ(characterCount("TC0P"), 4U);
    EXPECT_EQ(characterCount("°"), 1U);
    EXPECT_EQ(characterCount("71 °C"), 5U);
    EXPECT_EQ(characterCount("—€😀"), 3U);
    EXPECT_EQ(characterCount(std::string_view("a\0b", 3)), 3U);
}

TEST(Text, CountsACombiningMarkAsACharacter) { EXPECT_EQ(characterCount("e\u0301"), 2U); }

TEST(Text, CountsEveryIllFormedByteAsOneCharacter) {
    EXPECT_EQ(characterCount(bytes({0xFF, 0xFE, 0x80})), 3U);
    EXPECT_EQ(characterCount(bytes({0xE2, 0x82})), 2U);
    EXPECT_EQ(characterCount(bytes({0xED, 0xA0, 0x80})), 3U);
    EXPECT_EQ(characterCount(bytes({0xC2, 0xC2, 0xB0})), 2U); // the second and third byte are "°"
    EXPECT_EQ(characterCount(bytes({0xF0, 0x9F, 0x98, 0x41})), 4U);
}

TEST(Text, KeepsTheFirstCharactersWhole) {
    const std::string_view text = "a°—😀z";
    EXPECT_EQ(firstCharacters(text, 0), "");
    EXPECT_EQ(firstCharacters(text, 1), "a");
    EXPECT_EQ(firstCharacters(text, 2), "a°");
    EXPECT_EQ(firstCharacters(text, 3), "a°—");
    EXPECT_EQ(firstCharacters(text, 4), "a°—😀");
    EXPECT_EQ(firstCharacters(text, 5), text);
}

TEST(Text, GivesAllOfATextThatHasFewerCharacters) {
    EXPECT_EQ(firstCharacters("°C", 3), "°C");
    EXPECT_EQ(firstCharacters("°C", std::string::npos), "°C");
    EXPECT_EQ(firstCharacters("", 1), "");
}

TEST(Text, LosesItsLastCharacterWhole) {
    EXPECT_EQ(withoutLastCharacter("TN0D"), "TN0");
    EXPECT_EQ(withoutLastCharacter("0°"), "0");
    EXPECT_EQ(withoutLastCharacter("0—"), "0");
    EXPECT_EQ(withoutLastCharacter("0😀"), "0");
    EXPECT_EQ(withoutLastCharacter("°"), "");
    EXPECT_EQ(withoutLastCharacter(""), "");
}

TEST(Text, LosesOnlyTheLastByteWhenItIsIllFormed) {
    EXPECT_EQ(withoutLastCharacter(bytes({'a', 0x80})), "a");
    EXPECT_EQ(withoutLastCharacter("°" + bytes({0xFF})), "°");
    EXPECT_EQ(withoutLastCharacter("°" + bytes({0x80})), "°");
    EXPECT_EQ(withoutLastCharacter(bytes({0xE2, 0x82})), bytes({0xE2}));
    EXPECT_EQ(withoutLastCharacter(bytes({0xED, 0xA0, 0x80})), bytes({0xED, 0xA0}));
    EXPECT_EQ(withoutLastCharacter(bytes({0x80, 0x80, 0x80, 0x80, 0x80})), bytes({0x80, 0x80, 0x80, 0x80}));
}

TEST(Text, IsTheSameFromTheFrontAndFromTheBackForAnyBytes) {
    constexpr std::array<unsigned char, 12> alphabet{'a',  ' ',  0x80, 0x9F, 0xA0, 0xBF,
                                                     0xC2, 0xE2, 0xED, 0xF0, 0xF4, 0xFF};
    std::mt19937 random(20260301); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts in every run
    std::uniform_int_distribution<std::size_t> anyLength(0, 9);
    std::uniform_int_distribution<std::size_t> anyIndex(0, alphabet.size() - 1);
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t length = anyLength(random); length > 0; --length) {
            text.push_back(static_cast<char>(alphabet.at(anyIndex(random))));
        }
        SCOPED_TRACE(testing::PrintToString(text));
        const std::size_t count = characterCount(text);
        ASSERT_LE(count, text.size());
        ASSERT_EQ(firstCharacters(text, count), text);
        ASSERT_EQ(withoutLastCharacter(text), firstCharacters(text, count == 0 ? 0 : count - 1));
        ASSERT_EQ(trimmed(trimmed(text)), trimmed(text));
    }
}

TEST(Text, IsTrimmedOfEveryWhiteSpaceCharacterOfUnicode) {
    std::string all;
    for (const char32_t codePoint : whiteSpace) {
        SCOPED_TRACE(static_cast<std::size_t>(codePoint));
        const std::string space = utf8(codePoint);
        EXPECT_EQ(trimmed(space), "");
        EXPECT_EQ(trimmed(std::string(space).append("a b°").append(space)), "a b°");
        all += space;
    }
    EXPECT_EQ(trimmed(all), "");
    EXPECT_EQ(trimmed(all + "71.5" + all), "71.5");
}

TEST(Text, IsTrimmedOfNothingElse) {
    // Zero-width space, word joiner, byte order mark, NUL, unit separator, soft hyphen, braille blank.
    for (const char32_t codePoint : {U'\x200B', U'\x2060', U'\xFEFF', U'\0', U'\x1F', U'\xAD', U'\x2800'}) {
        SCOPED_TRACE(static_cast<std::size_t>(codePoint));
        const std::string text = utf8(codePoint) + "a" + utf8(codePoint);
        EXPECT_EQ(trimmed(text), text);
        EXPECT_EQ(trimmed(" " + text + "\n"), text);
    }
}

TEST(Text, TreatsExactlyTwentyFiveCodePointsAsWhiteSpace) {
    std::size_t count = 0;
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (trimmed(utf8(codePoint)).empty()) ++count;
    }
    EXPECT_EQ(count, whiteSpace.size());
}

TEST(Text, KeepsWhiteSpaceInside) { EXPECT_EQ(trimmed("\t a \u00A0 b\r\n"), "a \u00A0 b"); }

TEST(Text, IsNotTrimmedOfTheBytesOfABrokenSpace) {
    const std::string halfASpace = bytes({0xE3, 0x80}); // two thirds of U+3000
    EXPECT_EQ(trimmed(" " + halfASpace + " "), halfASpace);
    const std::string strayBytes = bytes({0x85, 'a', 0xA0});
    EXPECT_EQ(trimmed(strayBytes), strayBytes);
}

TEST(Text, EndsOnIllFormedBytes) {
    for (const std::string& text : illFormedTexts()) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(trimmed(" " + text + " "), text);
        EXPECT_EQ(firstCharacters(text, text.size()), text);
        EXPECT_GE(characterCount(text), 1U);
    }
}

TEST(Text, LowersAsciiLettersOnly) {
    EXPECT_EQ(asciiLowercased("@AZ[ azÄ°C 19"), "@az[ azÄ°c 19");
    EXPECT_EQ(asciiLowercased('A'), 'a');
    EXPECT_EQ(asciiLowercased('Z'), 'z');
    EXPECT_EQ(asciiLowercased('@'), '@');
    EXPECT_EQ(asciiLowercased('['), '[');
}

TEST(Text, KnowsDecimalDigits) {
    for (const char digit : std::string_view("0123456789")) EXPECT_TRUE(isDecimalDigit(digit)) << digit;
    for (const char other : std::string_view("/:aA- ")) EXPECT_FALSE(isDecimalDigit(other)) << other;
}

TEST(Text, ReadsHexDigitsOfEitherCase) {
    const std::string_view lower = "0123456789abcdef";
    const std::string_view upper = "0123456789ABCDEF";
    for (std::size_t value = 0; value < 16; ++value) {
        EXPECT_EQ(hexDigitValue(lower[value]), static_cast<int>(value));
        EXPECT_EQ(hexDigitValue(upper[value]), static_cast<int>(value));
    }
    for (const char other : std::string_view("/:@G`g x")) EXPECT_EQ(hexDigitValue(other), -1) << other;
    EXPECT_EQ(hexDigitValue(static_cast<char>(0xC2)), -1);
}

TEST(Text, ContainsItsPartsAndTheEmptyText) {
    EXPECT_TRUE(contains("infinite", "inf"));
    EXPECT_TRUE(contains("a", ""));
    EXPECT_FALSE(contains("in f", "inf"));
    EXPECT_FALSE(contains("", "a"));
}

TEST(Text, ReplacesEveryOccurrence) {
    EXPECT_EQ(replacedAll("a\tb\t\tc", "\t", " "), "a b  c");
    EXPECT_EQ(replacedAll("ab ab", "ab", ""), " ");
    EXPECT_EQ(replacedAll("nothing", "x", "y"), "nothing");
    EXPECT_EQ(replacedAll("", "x", "y"), "");
    EXPECT_EQ(replacedAll("°", "°", "deg"), "deg");
}

TEST(Text, ReplacesInOnePassFromTheLeft) {
    EXPECT_EQ(replacedAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replacedAll("aXb", "X", "XX"), "aXXb");
    EXPECT_EQ(replacedAll("aab", "ab", "b"), "ab"); // the "ab" that arises is not looked at again
}

// Direction

TEST(DirectionIsolated, PutsMarksAroundWhatRunsFromRightToLeft) {
    EXPECT_EQ(directionIsolated("מעבד 1"), "\u2068מעבד 1\u2069");
    EXPECT_EQ(directionIsolated("CPU معالج"), "\u2068CPU معالج\u2069");
}

TEST(DirectionIsolated, LeavesOtherTextsAsTheyAre) {
    for (const char* const text : {"", "CPU 48 °C", "处理器", "Процессор", "\xD7", "a\xD7"}) {
        EXPECT_EQ(directionIsolated(text), text);
    }
}

} // namespace
} // namespace kelvinbar::text_test
