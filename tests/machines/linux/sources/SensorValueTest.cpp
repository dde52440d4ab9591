#include "machines/linux/sources/SensorValue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using enum SensorKind;
using Bytes = std::vector<std::uint8_t>;

/// The bytes that count of an encoded number, when the rest is zero as it has to be.
std::optional<Bytes> encoded(std::string_view type, double value) {
    const auto bytes = encodedNumber(sensorType(type), value);
    if (!bytes) return std::nullopt;
    const auto* const end = bytes->begin() + sensorType(type).size;
    EXPECT_TRUE(std::all_of(end, bytes->end(), [](std::uint8_t byte) { return byte == 0; }));
    return Bytes(bytes->begin(), end);
}

struct Edges {
    SensorKind kind;
    double lowest;
    double highest;
};

TEST(SensorValue, AValueIsPossibleUpToBothEdgesOfItsKind) {
    for (const Edges& edges :
         {Edges{temperature, -100, 200}, Edges{voltage, -1000, 1000}, Edges{current, -10'000, 10'000},
          Edges{power, -100'000, 100'000}, Edges{energy, 0, 100'000}, Edges{fan, 0, 30'000},
          Edges{fanMinimum, 0, 30'000}, Edges{fanMaximum, 0, 30'000}, Edges{fanTarget, 0, 30'000},
          Edges{fanSafe, 0, 30'000}, Edges{charge, 0, 1'000'000}, Edges{count, 0, 1'000'000},
          Edges{duration, 0, 1'000'000}, Edges{percent, 0, 100}}) {
        SCOPED_TRACE(static_cast<int>(edges.kind));
        EXPECT_TRUE(isPossibleValue(edges.kind, edges.lowest));
        EXPECT_TRUE(isPossibleValue(edges.kind, edges.highest));
        EXPECT_FALSE(isPossibleValue(edges.kind, edges.lowest - 0.001));
        EXPECT_FALSE(isPossibleValue(edges.kind, edges.highest + 0.001));
    }
}

TEST(SensorValue, CodesOfSensorsThatAreNotThereAreImpossible) {
    EXPECT_FALSE(isPossibleValue(temperature, -128));
    EXPECT_FALSE(isPossibleValue(temperature, -127));
    EXPECT_FALSE(isPossibleValue(temperature, 255));
    EXPECT_FALSE(isPossibleValue(fan, 65535));
    EXPECT_FALSE(isPossibleValue(fan, -1));
    EXPECT_FALSE(isPossibleValue(percent, 255));
}

TEST(SensorValue, AStoppedFanAndFrostArePossible) {
    EXPECT_TRUE(isPossibleValue(fan, 0));
    EXPECT_TRUE(isPossibleValue(temperature, 0));
    EXPECT_TRUE(isPossibleValue(temperature, -20));
    EXPECT_TRUE(isPossibleValue(voltage, -12));
    EXPECT_TRUE(isPossibleValue(current, -2.5));
}

TEST(SensorValue, KindsThatAreNoMeasurementsCanHaveAnyValue) {
    for (const SensorKind kind : {fanMode, flag, text}) {
        SCOPED_TRACE(static_cast<int>(kind));
        EXPECT_TRUE(isPossibleValue(kind, 1e9));
        EXPECT_TRUE(isPossibleValue(kind, -1e9));
    }
}

TEST(SensorValue, NoMeasurementIsNotANumber) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const SensorKind kind : {temperature, voltage, current, power, energy, fan, charge, percent}) {
        SCOPED_TRACE(static_cast<int>(kind));
        EXPECT_FALSE(isPossibleValue(kind, nan));
        EXPECT_FALSE(isPossibleValue(kind, infinity));
        EXPECT_FALSE(isPossibleValue(kind, -infinity));
    }
}

TEST(SensorValue, ATypeHasTheSizeThatItHasInAController) {
    for (const auto& [type, size] : {std::pair<std::string_view, std::uint32_t>{"flt ", 4},
                                     {"sp78", 2},
                                     {"fpe2", 2},
                                     {"ui8 ", 1},
                                     {"flag", 1},
                                     {"ui16", 2},
                                     {"ui32", 4},
                                     {"ch8*", 32}}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(sensorType(type).size, size);
    }
}

TEST(SensorValue, FloatsAreLittleEndian) {
    EXPECT_EQ(encoded("flt ", 0), (Bytes{0x00, 0x00, 0x00, 0x00}));
    EXPECT_EQ(encoded("flt ", 1), (Bytes{0x00, 0x00, 0x80, 0x3F}));
    EXPECT_EQ(encoded("flt ", 42.5), (Bytes{0x00, 0x00, 0x2A, 0x42}));
    EXPECT_EQ(encoded("flt ", -0.125), (Bytes{0x00, 0x00, 0x00, 0xBE}));
    EXPECT_EQ(encoded("flt ", 45.85), (Bytes{0x66, 0x66, 0x37, 0x42}));
}

TEST(SensorValue, SignedFixedPointIsBigEndianWithTwoHundredAndFiftySixthsOfAWhole) {
    EXPECT_EQ(encoded("sp78", 0), (Bytes{0x00, 0x00}));
    EXPECT_EQ(encoded("sp78", 45.75), (Bytes{0x2D, 0xC0}));
    EXPECT_EQ(encoded("sp78", -0.25), (Bytes{0xFF, 0xC0}));
    EXPECT_EQ(encoded("sp78", -1), (Bytes{0xFF, 0x00}));
    EXPECT_EQ(encoded("sp78", -128), (Bytes{0x80, 0x00}));
    EXPECT_EQ(encoded("sp78", 127.99609375), (Bytes{0x7F, 0xFF}));
}

TEST(SensorValue, FanFixedPointIsBigEndianWithQuartersOfAWhole) {
    EXPECT_EQ(encoded("fpe2", 0), (Bytes{0x00, 0x00}));
    EXPECT_EQ(encoded("fpe2", 0.25), (Bytes{0x00, 0x01}));
    EXPECT_EQ(encoded("fpe2", 1200), (Bytes{0x12, 0xC0}));
    EXPECT_EQ(encoded("fpe2", 16383.75), (Bytes{0xFF, 0xFF}));
}

TEST(SensorValue, WholeNumbersAreBigEndian) {
    EXPECT_EQ(encoded("ui8 ", 0), Bytes{0x00});
    EXPECT_EQ(encoded("ui8 ", 255), Bytes{0xFF});
    EXPECT_EQ(encoded("ui16", 1234), (Bytes{0x04, 0xD2}));
    EXPECT_EQ(encoded("ui16", 65535), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(encoded("ui32", 305419896), (Bytes{0x12, 0x34, 0x56, 0x78}));
    EXPECT_EQ(encoded("ui32", 4294967295.0), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(encoded("flag", 0), Bytes{0x00});
    EXPECT_EQ(encoded("flag", 1), Bytes{0x01});
}

TEST(SensorValue, AFractionGoesToTheNearestNumberThatTheTypeHas) {
    EXPECT_EQ(encoded("sp78", 45.85), (Bytes{0x2D, 0xDA})); // 217.6 of 256
    EXPECT_EQ(encoded("sp78", -45.85), (Bytes{0xD2, 0x26}));
    EXPECT_EQ(encoded("ui16", 1233.6), (Bytes{0x04, 0xD2}));
    EXPECT_EQ(encoded("fpe2", 1200.1), (Bytes{0x12, 0xC0}));
}

TEST(SensorValue, ATypeHoldsNothingBeyondItsEdges) {
    for (const auto& [type, value] : {std::pair<std::string_view, double>{"sp78", 128},
                                      {"sp78", -128.01},
                                      {"fpe2", 16384},
                                      {"fpe2", -0.25},
                                      {"ui8 ", 256},
                                      {"ui8 ", -1},
                                      {"flag", 2},
                                      {"flag", -1},
                                      {"ui16", 65536},
                                      {"ui16", -1},
                                      {"ui32", 4294967296.0},
                                      {"ui32", -1},
                                      {"ui32", 1e30},
                                      {"sp78", std::numeric_limits<double>::infinity()},
                                      {"ui16", -std::numeric_limits<double>::infinity()}}) {
        SCOPED_TRACE(std::string(type).append(" ").append(std::to_string(value)));
        EXPECT_EQ(encodedNumber(sensorType(type), value), std::nullopt);
    }
}

TEST(SensorValue, ATypeIsFoundByItsName) {
    for (const std::string_view type : {"flt ", "sp78", "fpe2", "ui8 ", "flag", "ui16", "ui32", "ch8*"}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(sensorType(type).name, type);
    }
}

TEST(SensorValue, EveryOtherNameIsThatOfATextType) {
    for (const std::string_view type : {"flt", "FLT ", "sp69", "ui8", "", "ch8* "}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(sensorType(type).name, "ch8*");
        EXPECT_EQ(sensorType(type).size, 32U);
    }
}

TEST(SensorValue, ATextIsFollowedByZeros) {
    SMCBytes expected{};
    EXPECT_EQ(encodedText(""), expected);
    expected[0] = 'F';
    expected[1] = 'u';
    expected[2] = 0xC3;
    EXPECT_EQ(encodedText("Fu\xC3"), expected);
}

TEST(SensorValue, ATextIsCutToThirtyTwoBytes) {
    constexpr std::string_view text = "abcdefghijklmnopqrstuvwxyz0123456789ABCD";
    ASSERT_EQ(text.size(), 40U);
    SMCBytes expected{};
    std::ranges::copy(text.substr(0, 32), expected.begin());
    EXPECT_EQ(encodedText(text.substr(0, 32)), expected);
    EXPECT_EQ(encodedText(text), expected);
    expected[31] = 0;
    EXPECT_EQ(encodedText(text.substr(0, 31)), expected);
}

TEST(SensorValue, NotANumberIsNoWholeNumber) {
    for (const std::string_view type : {"sp78", "fpe2", "ui8 ", "flag", "ui16", "ui32"}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(encodedNumber(sensorType(type), std::numeric_limits<double>::quiet_NaN()), std::nullopt);
        EXPECT_EQ(encodedNumber(sensorType(type), std::numeric_limits<double>::infinity()), std::nullopt);
    }
}

TEST(SensorValue, AFloatHoldsNothingBeyondItsEdges) {
    EXPECT_EQ(encodedNumber(sensorType("flt "), 1e300), std::nullopt);
    EXPECT_EQ(encodedNumber(sensorType("flt "), -1e300), std::nullopt);
}

TEST(SensorValue, TextsHoldNoNumber) { EXPECT_EQ(encodedNumber(sensorType("ch8*"), 1), std::nullopt); }

} // namespace

} // namespace kelvinbar
