#include "store/ValueNormalization.h"

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::value_normalization_test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// With a placeholder as value text, which a number always replaces.
NormalizedValue normalized(std::string_view key, double number, std::string_view unit) {
    return normalizeValue(key, "text of the controller", number, unit);
}

struct Case {
    std::string key;
    std::string unit;
    double number;
    std::string text;
    double scaled;
};

void expectNormalized(const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        SCOPED_TRACE(each.key + " " + std::to_string(each.number) + " " + each.unit);
        const NormalizedValue result = normalized(each.key, each.number, each.unit);
        EXPECT_EQ(result.value, each.text);
        EXPECT_EQ(result.numeric, each.scaled);
    }
}

TEST(NumericValue, AnAbsentNumberStaysAbsent) { EXPECT_EQ(numericValue(std::nullopt), std::nullopt); }

TEST(NumericValue, AFiniteNumberIsItself) {
    for (const double number : {40.5, 0.0, 1450.0, -3.0, std::numeric_limits<double>::lowest(),
                                std::numeric_limits<double>::max()}) {
        EXPECT_EQ(numericValue(number), number);
    }
}

TEST(NumericValue, InfinityAndNotANumberHaveNoNumber) {
    EXPECT_EQ(numericValue(infinity), std::nullopt);
    EXPECT_EQ(numericValue(-infinity), std::nullopt);
    EXPECT_EQ(numericValue(notANumber), std::nullopt);
}

TEST(NormalizeValue, WithoutANumberTheTextOfTheControllerIsUnchanged) {
    for (const std::string text : {"", "Yes", "  12.50 ", "0000807F", "-3"}) {
        SCOPED_TRACE(text);
        for (const std::string_view unit : {"RPM", "V", ""}) {
            EXPECT_EQ(normalizeValue("B0AV", text, std::nullopt, unit),
                      (NormalizedValue{text, std::nullopt}));
        }
    }
}

TEST(NormalizeValue, InfinityAndNotANumberShowTheTextOfTheController) {
    for (const double number : {infinity, -infinity, notANumber}) {
        EXPECT_EQ(normalizeValue("F0Ac", "0000807F", numericValue(number), "RPM"),
                  (NormalizedValue{"0000807F", std::nullopt}));
    }
}

TEST(NormalizeValue, ABatteryVoltageAbove100IsTakenForMillivolts) {
    expectNormalized({
        {"B0AV", "V", 12500, "12.50", 12.5},
        {"B0AV", "V", 99, "99", 99},
        {"B0AV", "V", 100, "100", 100},
        {"B0AV", "V", -100, "-100", -100},
        {"B0AV", "V", 101, "0.101", 0.101},
        {"B0AV", "V", -12500, "-12.50", -12.5},
        {"BXYZ", "V", 5000, "5", 5},
    });
}

TEST(NormalizeValue, AChargerVoltageOfExactly100IsNotScaled) {
    expectNormalized({
        {"CH0V", "V", 100, "100", 100},
        {"CH0V", "V", 150, "0.15", 0.15},
        {"CH0V", "V", 20000, "20", 20},
    });
}

TEST(NormalizeValue, ABatteryCurrentIsScaledByItsMagnitude) {
    expectNormalized({
        {"B0AC", "A", -1500, "-1.5", -1.5},
        {"B0AC", "A", 1500, "1.5", 1.5},
        {"B0AC", "A", 100, "100", 100},
        {"CHBI", "A", 2750, "2.75", 2.75},
        {"CHBI", "A", 100, "100", 100},
    });
}

TEST(NormalizeValue, ABatteryPowerIsScaledOnlyAbove1000) {
    expectNormalized({
        {"B0AP", "W", 900, "900", 900},
        {"B0AP", "W", 1000, "1000", 1000},
        {"B0AP", "W", -1000, "-1000", -1000},
        {"B0AP", "W", 1001, "1", 1.001},
        {"B0AP", "W", 15000, "15", 15},
        {"B0AP", "W", -15000, "-15", -15},
    });
}

TEST(NormalizeValue, AChargerPowerIsNotScaled) { expectNormalized({{"CH0W", "W", 15000, "15000", 15000}}); }

TEST(NormalizeValue, OtherKeysAreNotScaled) {
    expectNormalized({
        {"VC0C", "V", 150, "150", 150},
        {"IC0C", "A", 1500, "1500", 1500},
        {"PC0C", "W", 15000, "15000", 15000},
        {"VBAT", "V", 12500, "12500", 12500},
        {"ACPW", "W", 65000, "65000", 65000},
        {"CPCH", "V", 12500, "12500", 12500},
    });
}

TEST(NormalizeValue, SelfNamedKeysAreNotScaled) {
    expectNormalized({
        {"BAT0-acpi-0/in0", "V", 12500, "12500", 12500},
        {"BAT0-acpi-0/curr1", "A", -1500, "-1500", -1500},
        {"BAT0/power", "W", 15000, "15000", 15000},
        {"CHG0-isa-0000/in0", "V", 150, "150", 150},
        // A key of four characters belongs to a controller, even with a slash.
        {"B0/V", "V", 12500, "12.50", 12.5},
    });
}

TEST(NormalizeValue, KeysAndUnitsAreComparedCaseSensitively) {
    expectNormalized({
        {"b0AV", "V", 12500, "12500", 12500},
        {"Ch0V", "V", 12500, "12500", 12500},
        {"B0AV", "v", 12500, "12500", 12500},
        {"B0AV", " V", 12500, "12500", 12500},
        {"B0AV", "", 12500, "12500", 12500},
        {"B0RM", "mAh", 4500, "4500", 4500},
        {"F0Ac", "rpm", -3, "-3", -3},
    });
}

TEST(NormalizeValue, AValueIsScaledOnce) {
    expectNormalized({
        {"B0AV", "V", 5000000, "5000", 5000},
        {"B0AP", "W", 2000000, "2000", 2000},
    });
}

TEST(NormalizeValue, ASpeedThatIsNegativeOrNotANumberIsZero) {
    for (const double number : {-3.0, -0.2, -infinity, notANumber}) {
        EXPECT_EQ(normalized("F0Ac", number, "RPM"), (NormalizedValue{"0", 0}));
    }
}

TEST(NormalizeValue, ASpeedIsRoundedInTheTextButNotInTheNumber) {
    expectNormalized({
        {"F0Ac", "RPM", 1234.5, "1235", 1234.5},
        {"F0Ac", "RPM", 1234.4999, "1234", 1234.4999},
        {"F0Ac", "RPM", 0.5, "1", 0.5},
        {"F0Ac", "RPM", 2.5, "3", 2.5},
        {"F0Ac", "RPM", 0, "0", 0},
    });
}

TEST(NormalizeValue, ASpeedOfMinusZeroKeepsItsSign) {
    const NormalizedValue result = normalized("F0Ac", -0.0, "RPM");
    EXPECT_EQ(result.value, "-0");
    EXPECT_EQ(result.numeric, 0.0);
}

TEST(NormalizeValue, ASpeedOfABatteryKeyIsNotScaled) {
    expectNormalized({{"B0AV", "RPM", 1450, "1450", 1450}});
}

TEST(NormalizeValue, ANumberNearAWholeOneIsPrintedWhole) {
    expectNormalized({
        {"TC0P", "°C", 2.996, "3", 2.996},
        {"TC0P", "°C", 0.0004, "0", 0.0004},
        {"TC0P", "°C", 9.9999, "10", 9.9999},
        {"TC0P", "°C", -0.001, "-0", -0.001},
        {"TC0P", "°C", 0.0049, "0", 0.0049},
        {"TC0P", "°C", 100.004, "100", 100.004},
        {"TC0P", "°C", 40, "40", 40},
    });
}

TEST(NormalizeValue, ADifferenceOfExactly5ThousandthsIsNotNear) {
    expectNormalized({{"VC0C", "V", 0.005, "0.005", 0.005}, {"VC0C", "V", -0.005, "-0.005", -0.005}});
}

TEST(NormalizeValue, ANumberBelow10HasThreeDecimalsWithoutTrailingZeros) {
    expectNormalized({
        {"VC0C", "V", 1.25, "1.25", 1.25},
        {"VC0C", "V", 3.1, "3.1", 3.1},
        {"VC0C", "V", 0.0123, "0.012", 0.0123},
        {"VC0C", "V", 0.0499, "0.05", 0.0499},
        {"VC0C", "V", 1.2346, "1.235", 1.2346},
        {"VC0C", "V", 9.99, "9.99", 9.99},
        {"VC0C", "V", 9.9946, "9.995", 9.9946},
        {"VC0C", "V", -9.5, "-9.5", -9.5},
    });
}

TEST(NormalizeValue, ANumberOf10AndMoreHasTwoDecimals) {
    expectNormalized({
        {"TC0P", "°C", 10.5, "10.50", 10.5},
        {"TC0P", "°C", 12.5, "12.50", 12.5},
        {"TC0P", "°C", 45.678, "45.68", 45.678},
        {"TC0P", "°C", -10.5, "-10.50", -10.5},
        {"TC0P", "°C", 1234.25, "1234.25", 1234.25},
    });
}

TEST(NormalizeValue, AnInfiniteNumberIsHandedBack) {
    EXPECT_EQ(normalized("TC0P", infinity, "°C"), (NormalizedValue{"inf", infinity}));
    EXPECT_EQ(normalized("B0AV", -infinity, "V"), (NormalizedValue{"-inf", -infinity}));
    EXPECT_EQ(normalized("F0Ac", infinity, "RPM"), (NormalizedValue{"inf", infinity}));
}

TEST(NormalizeValue, NotANumberIsHandedBackUnlessItIsASpeed) {
    const NormalizedValue result = normalized("TC0P", notANumber, "°C");
    ASSERT_TRUE(result.numeric.has_value());
    EXPECT_TRUE(std::isnan(result.numeric.value_or(0)));
    EXPECT_EQ(result.value, "nan");
}

} // namespace
} // namespace kelvinbar::value_normalization_test
