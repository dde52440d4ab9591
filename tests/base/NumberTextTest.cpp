#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::number_text_test {
namespace {

using Limits = std::numeric_limits<double>;

constexpr double infinity = Limits::infinity();
constexpr double nan = Limits::quiet_NaN();

/// What "%.*f" prints under the "C" locale: the tests run under a locale with a decimal comma.
std::string printedText(double number, int decimals) {
    std::array<char, 400> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, number);
    std::string text(buffer.data(), static_cast<std::size_t>(length));
    std::ranges::replace(text, ',', '.');
    return text;
}

void expectPrintedText(double number) {
    for (int decimals = 0; decimals <= 3; ++decimals) {
        ASSERT_EQ(fixedText(number, decimals), printedText(number, decimals))
            << std::hexfloat << number << " with " << decimals << " decimals";
        ASSERT_EQ(fixedText(-number, decimals), printedText(-number, decimals))
            << std::hexfloat << -number << " with " << decimals << " decimals";
    }
}

void expectPrintedTexts(int count, const std::function<double(std::mt19937_64&)>& next) {
    std::mt19937_64 random(42); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same numbers in every run
    for (int round = 0; round < count; ++round) ASSERT_NO_FATAL_FAILURE(expectPrintedText(next(random)));
}

TEST(FixedText, HasExactlyTheDecimalsAskedFor) {
    EXPECT_EQ(fixedText(71.5, 0), "72");
    EXPECT_EQ(fixedText(71.5, 1), "71.5");
    EXPECT_EQ(fixedText(71.5, 2), "71.50");
    EXPECT_EQ(fixedText(71.5, 3), "71.500");
    EXPECT_EQ(fixedText(0, 0), "0");
    EXPECT_EQ(fixedText(0, 2), "0.00");
    EXPECT_EQ(fixedText(0.007, 2), "0.01");
    EXPECT_EQ(fixedText(12345.678, 3), "12345.678");
}

TEST(FixedText, RoundsTiesToTheEvenDigit) {
    EXPECT_EQ(fixedText(0.5, 0), "0");
    EXPECT_EQ(fixedText(1.5, 0), "2");
    EXPECT_EQ(fixedText(2.5, 0), "2");
    EXPECT_EQ(fixedText(0.25, 1), "0.2");
    EXPECT_EQ(fixedText(0.75, 1), "0.8");
    EXPECT_EQ(fixedText(0.125, 2), "0.12");
    EXPECT_EQ(fixedText(0.375, 2), "0.38");
    EXPECT_EQ(fixedText(0.0625, 3), "0.062");
    EXPECT_EQ(fixedText(-2.5, 0), "-2");
}

TEST(FixedText, RoundsFromTheExactBinaryValue) {
    EXPECT_EQ(fixedText(2.675, 2), "2.67"); // the double lies below the decimal tie
    EXPECT_EQ(fixedText(1.005, 2), "1.00");
    EXPECT_EQ(fixedText(0.045, 2), "0.04");
    EXPECT_EQ(fixedText(1.115, 2), "1.11");
    EXPECT_EQ(fixedText(std::nextafter(0.5, 1), 0), "1");
    EXPECT_EQ(fixedText(std::nextafter(0.5, 0), 0), "0");
    EXPECT_EQ(fixedText(std::nextafter(0.125, 1), 2), "0.13");
}

TEST(FixedText, CarriesIntoTheWholePart) {
    EXPECT_EQ(fixedText(9.999, 2), "10.00");
    EXPECT_EQ(fixedText(99.96, 1), "100.0");
    EXPECT_EQ(fixedText(0.9999, 3), "1.000");
}

TEST(FixedText, KeepsTheSignOfWhatRoundsToZero) {
    EXPECT_EQ(fixedText(-0.0, 0), "-0");
    EXPECT_EQ(fixedText(-0.0, 2), "-0.00");
    EXPECT_EQ(fixedText(-0.001, 0), "-0");
    EXPECT_EQ(fixedText(-0.001, 2), "-0.00");
    EXPECT_EQ(fixedText(-Limits::denorm_min(), 3), "-0.000");
}

TEST(FixedText, NamesInfinitiesAndNan) {
    for (int decimals = 0; decimals <= 3; ++decimals) {
        EXPECT_EQ(fixedText(infinity, decimals), "inf");
        EXPECT_EQ(fixedText(-infinity, decimals), "-inf");
        EXPECT_EQ(fixedText(nan, decimals), "nan");
        EXPECT_EQ(fixedText(std::copysign(nan, -1.0), decimals), "nan");
    }
}

TEST(FixedText, IsExactWhereEveryDoubleIsWhole) {
    EXPECT_EQ(fixedText(9007199254740991.0, 2), "9007199254740991.00");
    EXPECT_EQ(fixedText(9007199254740992.0, 2), "9007199254740992.00");
    EXPECT_EQ(fixedText(9007199254740994.0, 0), "9007199254740994");
    EXPECT_EQ(fixedText(-1e23, 1), "-99999999999999991611392.0");
    const std::string largest = fixedText(Limits::max(), 3);
    EXPECT_EQ(largest.size(), 309U + 4U);
    EXPECT_TRUE(largest.starts_with("17976931348623157081")) << largest;
    EXPECT_TRUE(largest.ends_with("58368.000")) << largest;
}

TEST(FixedText, IsWhatCPrintsForNumbersAtTheLimits) {
    for (const double number :
         {0.0, Limits::denorm_min(), Limits::min(), std::nextafter(Limits::min(), 0.0), Limits::epsilon(),
          0.0005, 0.005, 0.05, 0.5, Limits::max(), std::nextafter(Limits::max(), 0.0)}) {
        ASSERT_NO_FATAL_FAILURE(expectPrintedText(number));
    }
}

TEST(FixedText, IsWhatCPrintsForPowersOfTwoAndTheirNeighbours) {
    for (int exponent = Limits::min_exponent - Limits::digits; exponent < Limits::max_exponent; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double number : {power, std::nextafter(power, 0.0), std::nextafter(power, infinity)}) {
            ASSERT_NO_FATAL_FAILURE(expectPrintedText(number));
        }
    }
}

TEST(FixedText, IsWhatCPrintsForTies) {
    for (int sixteenths = 0; sixteenths <= 40'000; ++sixteenths) {
        ASSERT_NO_FATAL_FAILURE(expectPrintedText(sixteenths / 16.0));
    }
}

TEST(FixedText, IsWhatCPrintsForAnyBits) {
    expectPrintedTexts(20'000, [](std::mt19937_64& random) {
        const auto number = std::bit_cast<double>(random());
        return std::isnan(number) ? 0.0 : number;
    });
}

TEST(FixedText, IsWhatCPrintsForDenormals) {
    expectPrintedTexts(1'000, [](std::mt19937_64& random) { return std::bit_cast<double>(random() >> 12U); });
}

TEST(FixedText, IsWhatCPrintsForNumbersOfEveryUsualMagnitude) {
    expectPrintedTexts(200'000, [](std::mt19937_64& random) {
        std::uniform_real_distribution<double> anyMantissa(1, 2);
        std::uniform_int_distribution<int> anyExponent(-16, 66);
        const double mantissa = anyMantissa(random);
        return std::ldexp(mantissa, anyExponent(random));
    });
}

TEST(FixedText, IsWhatCPrintsForDecimalNumbers) {
    expectPrintedTexts(100'000, [](std::mt19937_64& random) {
        std::uniform_int_distribution<int> anyTenThousandths(0, 100'000'000);
        return anyTenThousandths(random) / 10'000.0;
    });
}

TEST(DistanceFromWhole, IsTheDistanceToTheNearestWholeNumber) {
    EXPECT_EQ(distanceFromWhole(3), 0);
    EXPECT_EQ(distanceFromWhole(0.25), 0.25);
    EXPECT_EQ(distanceFromWhole(0.75), 0.25);
    EXPECT_EQ(distanceFromWhole(2.5), 0.5);
    EXPECT_EQ(distanceFromWhole(-0.25), 0.25);
    EXPECT_EQ(distanceFromWhole(-7.5), 0.5);
    EXPECT_EQ(distanceFromWhole(Limits::max()), 0);
}

TEST(DistanceFromWhole, IsNanForWhatIsNoFiniteNumber) {
    EXPECT_TRUE(std::isnan(distanceFromWhole(infinity)));
    EXPECT_TRUE(std::isnan(distanceFromWhole(-infinity)));
    EXPECT_TRUE(std::isnan(distanceFromWhole(nan)));
}

TEST(PlainNumberText, HasNoDecimalsWithinFiveThousandthsOfAWholeNumber) {
    EXPECT_EQ(plainNumberText(0), "0");
    EXPECT_EQ(plainNumberText(1200), "1200");
    EXPECT_EQ(plainNumberText(2.996), "3");
    EXPECT_EQ(plainNumberText(3.0049), "3");
    EXPECT_EQ(plainNumberText(-0.001), "-0");
    EXPECT_EQ(plainNumberText(-41.9951), "-42");
    EXPECT_EQ(plainNumberText(1e300), fixedText(1e300, 0));
}

TEST(PlainNumberText, HasTwoDecimalsOtherwise) {
    EXPECT_EQ(plainNumberText(71.5), "71.50");
    EXPECT_EQ(plainNumberText(0.01), "0.01");
    EXPECT_EQ(plainNumberText(2.994), "2.99");
    EXPECT_EQ(plainNumberText(3.0051), "3.01");
    EXPECT_EQ(plainNumberText(-12.25), "-12.25");
}

TEST(PlainNumberText, CountsTheBoundaryItselfAsTooFar) {
    EXPECT_EQ(plainNumberText(0.005), "0.01");
    EXPECT_EQ(plainNumberText(-0.005), "-0.01");
    EXPECT_EQ(plainNumberText(std::nextafter(0.005, 0.0)), "0");
}

TEST(PlainNumberText, NamesInfinitiesAndNan) {
    EXPECT_EQ(plainNumberText(infinity), "inf");
    EXPECT_EQ(plainNumberText(-infinity), "-inf");
    EXPECT_EQ(plainNumberText(nan), "nan");
}

struct NumberCase {
    std::string_view text;
    double number;
};

void expectLeadingNumbers(const std::vector<NumberCase>& cases) {
    for (const auto& [text, number] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(leadingNumber(text), number);
    }
}

TEST(LeadingNumber, ReadsSignPointAndExponent) {
    expectLeadingNumbers({{"0", 0},
                          {"42", 42},
                          {"+42", 42},
                          {"-42", -42},
                          {"3.25", 3.25},
                          {".5", 0.5},
                          {"+.5", 0.5},
                          {"-.5", -0.5},
                          {"5.", 5},
                          {"007", 7},
                          {"1e3", 1000},
                          {"1E3", 1000},
                          {"1e+3", 1000},
                          {"25e-2", 0.25},
                          {"5.e1", 50},
                          {".5e1", 5}});
}

TEST(LeadingNumber, IgnoresWhatFollows) {
    expectLeadingNumbers({{"12abc", 12},
                          {"45 °C", 45},
                          {"1,5", 1},
                          {"1.5,7", 1.5},
                          {"1.2.3", 1.2},
                          {"1-2", 1},
                          {"12 34", 12},
                          {"0x1F", 0},
                          {"1_000", 1},
                          {"1'000", 1},
                          {"1e5.5", 100000},
                          {"7\n", 7},
                          {std::string_view("7\0"
                                            "8",
                                            3),
                           7}});
}

TEST(LeadingNumber, TakesAnExponentWithoutDigitsForJunk) {
    expectLeadingNumbers(
        {{"1e", 1}, {"1e+", 1}, {"1e-", 1}, {"1ex", 1}, {"2.5E", 2.5}, {"1e +2", 1}, {"3em", 3}});
}

TEST(LeadingNumber, IsZeroWithoutANumber) {
    expectLeadingNumbers({{"", 0},
                          {"   ", 0},
                          {".", 0},
                          {"+", 0},
                          {"-", 0},
                          {"-.", 0},
                          {".e1", 0},
                          {"e5", 0},
                          {"abc", 0},
                          {"abc 12", 0},
                          {"--1", 0},
                          {"+-1", 0},
                          {"- 1", 0},
                          {",5", 0},
                          {"°1", 0},
                          {"nan", 0},
                          {"inf", 0},
                          {"-infinity", 0}});
}

TEST(LeadingNumber, SkipsWhiteSpaceOfUnicodeInFront) {
    expectLeadingNumbers(
        {{" 12", 12}, {"\t\r\n 12", 12}, {"\u00A0-3", -3}, {"\u3000\u2009 1.5", 1.5}, {"\u200B12", 0}});
}

TEST(LeadingNumber, IsInfiniteWhenItIsTooLarge) {
    expectLeadingNumbers({{"1e309", infinity},
                          {"-1e309", -infinity},
                          {"1e999999999999999999999", infinity},
                          {"1.7976931348623159e308", infinity}});
    EXPECT_EQ(leadingNumber(std::string(400, '9')), infinity);
    EXPECT_EQ(leadingNumber("-" + std::string(400, '9') + ".5 RPM"), -infinity);
}

TEST(LeadingNumber, ReachesTheLimitsOfADouble) {
    expectLeadingNumbers({{"1.7976931348623157e308", Limits::max()},
                          {"-1.7976931348623157e308", Limits::lowest()},
                          {"2.2250738585072014e-308", Limits::min()},
                          {"5e-324", Limits::denorm_min()}});
}

TEST(LeadingNumber, IsZeroWhenItIsTooSmall) {
    expectLeadingNumbers({{"1e-400", 0}, {"-1e-400", 0}, {"1e-999999999999999999999", 0}});
}

TEST(LeadingNumber, KeepsTheSignOfZero) {
    EXPECT_TRUE(std::signbit(leadingNumber("-0")));
    EXPECT_FALSE(std::signbit(leadingNumber("0")));
}

TEST(LeadingNumber, RoundsToTheNearestDouble) {
    expectLeadingNumbers({{"0.1", 0.1},
                          {"9007199254740993", 9007199254740992.0},
                          {"9007199254740995", 9007199254740996.0},
                          {"0.30000000000000004", 0.1 + 0.2},
                          {"123456789012345678901234567890", 1.2345678901234568e29}});
}

TEST(LeadingNumber, ReadsWhatFixedTextWrites) {
    for (const double number : {0.0, 0.125, -2.5, 71.375, 4294967295.0, 9007199254740991.0}) {
        EXPECT_EQ(leadingNumber(fixedText(number, 3)), number);
    }
}

} // namespace
} // namespace kelvinbar::number_text_test
