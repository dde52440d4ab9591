#include "tools/PrintedText.h"

#include "base/NumberText.h"

#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::printed_text_test {

namespace {

TEST(PrintableText, LeavesTextsOfAllScriptsAlone) {
    for (const std::string_view text : {"", "CPU Tctl", "Lüfter 45.85 °C", "温度"}) {
        EXPECT_EQ(printableText(text), text);
    }
}

TEST(PrintableText, ReplacesControlCharactersAndIllFormedBytes) {
    EXPECT_EQ(printableText("a\nb\tc"), "a\uFFFDb\uFFFDc");
    EXPECT_EQ(printableText("\x1b[2Jx\x7F"), "\uFFFD[2Jx\uFFFD");
    EXPECT_EQ(printableText("\u009B2J"), "\uFFFD2J"); // the same sequence in one character
    EXPECT_EQ(printableText("a\xFF\xC3"), "a\uFFFD\uFFFD");
    EXPECT_EQ(printableText(std::string_view("a\0b", 3)), "a\uFFFDb");
}

TEST(ShortestText, IsReadBackAsTheSameNumber) {
    for (const double number : {0.1, 45.85, -1.984, 1234.5, 1e-7, 6.02e23, 0.1729736328125}) {
        EXPECT_EQ(leadingNumber(shortestText(number)), number) << shortestText(number);
    }
}

TEST(ShortestText, HasNoDigitsThatSayNothing) {
    EXPECT_EQ(shortestText(1124), "1124");
    EXPECT_EQ(shortestText(56.5), "56.5");
    EXPECT_EQ(shortestText(-0.0), "0");
    EXPECT_EQ(shortestText(25276502016), "25276502016");
}

TEST(ShortestText, IsEmptyForWhatIsNoNumber) {
    EXPECT_EQ(shortestText(std::numeric_limits<double>::quiet_NaN()), "");
    EXPECT_EQ(shortestText(std::numeric_limits<double>::infinity()), "");
}

TEST(NumberText, HasNoSignBeforeZero) {
    EXPECT_EQ(numberText(-0.001, "°C"), "0");
    EXPECT_EQ(numberText(-0.0, "RPM"), "0");
    EXPECT_EQ(numberText(-0.25, "A"), "-0.25");
}

TEST(ChangeText, HasItsSignUnlessItIsZero) {
    EXPECT_EQ(changeText(0.5, "°C"), "+0.5");
    EXPECT_EQ(changeText(-12, "RPM"), "-12");
    EXPECT_EQ(changeText(-0.001, "V"), "0");
    EXPECT_EQ(changeText(0.001, "V"), "0");
}

TEST(Alignment, CountsCharactersNotBytes) {
    EXPECT_EQ(padded("5 °C", 6), "5 °C  ");
    EXPECT_EQ(rightAligned("5 °C", 6), "  5 °C");
}

TEST(Alignment, CutsNothing) {
    EXPECT_EQ(padded("long", 2), "long");
    EXPECT_EQ(rightAligned("long", 2), "long");
}

} // namespace
} // namespace kelvinbar::printed_text_test
