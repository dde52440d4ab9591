#include "machines/linux/sources/SensorValue.h"

#include <limits>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_value_test {

namespace {

using enum SensorKind;

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
        EXPECT_TRUE(possibleRange(edges.kind, "").contains(edges.lowest));
        EXPECT_TRUE(possibleRange(edges.kind, "").contains(edges.highest));
        EXPECT_FALSE(possibleRange(edges.kind, "").contains(edges.lowest - 0.001));
        EXPECT_FALSE(possibleRange(edges.kind, "").contains(edges.highest + 0.001));
    }
}

TEST(SensorValue, CodesOfSensorsThatAreNotThereAreImpossible) {
    EXPECT_FALSE(possibleRange(temperature, "").contains(-128));
    EXPECT_FALSE(possibleRange(temperature, "").contains(-127));
    EXPECT_FALSE(possibleRange(temperature, "").contains(255));
    EXPECT_FALSE(possibleRange(fan, "").contains(65535));
    EXPECT_FALSE(possibleRange(fan, "").contains(-1));
    EXPECT_FALSE(possibleRange(percent, "").contains(255));
}

TEST(SensorValue, AStoppedFanAndFrostArePossible) {
    EXPECT_TRUE(possibleRange(fan, "").contains(0));
    EXPECT_TRUE(possibleRange(temperature, "").contains(0));
    EXPECT_TRUE(possibleRange(temperature, "").contains(-20));
    EXPECT_TRUE(possibleRange(voltage, "").contains(-12));
    EXPECT_TRUE(possibleRange(current, "").contains(-2.5));
}

TEST(SensorValue, KindsThatAreNotMeasuredMayHaveAnyValue) {
    for (const SensorKind kind : {fanMode, flag, text}) {
        SCOPED_TRACE(static_cast<int>(kind));
        EXPECT_TRUE(possibleRange(kind, "").contains(1e9));
        EXPECT_TRUE(possibleRange(kind, "").contains(-1e9));
    }
}

TEST(SensorValue, NoMeasurementCanBeInfiniteOrNotANumber) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const SensorKind kind : {temperature, voltage, current, power, energy, fan, charge, percent}) {
        SCOPED_TRACE(static_cast<int>(kind));
        EXPECT_FALSE(possibleRange(kind, "").contains(nan));
        EXPECT_FALSE(possibleRange(kind, "").contains(infinity));
        EXPECT_FALSE(possibleRange(kind, "").contains(-infinity));
    }
}

TEST(SensorValue, AMainboardsTemperatureIsFrom1To120Degrees) {
    const ValueRange range = possibleRange(SensorKind::temperature, "nct6798");
    EXPECT_TRUE(range.contains(1));
    EXPECT_TRUE(range.contains(120));
    for (const double unconnected : {-128.0, -62.0, -55.0, 0.0, 127.0, 127.5}) {
        EXPECT_FALSE(range.contains(unconnected)) << unconnected;
    }
}

TEST(SensorValue, ATemperatureOfAProcessorCardOrDriveIsFromMinus20To150Degrees) {
    for (const char* const type : {"k10temp", "coretemp", "amdgpu", "nvme", "drivetemp"}) {
        const ValueRange range = possibleRange(SensorKind::temperature, type);
        EXPECT_TRUE(range.contains(-20)) << type;
        EXPECT_TRUE(range.contains(150)) << type;
        EXPECT_FALSE(range.contains(-21)) << type;
        EXPECT_FALSE(range.contains(151)) << type;
    }
}

TEST(SensorValue, OtherThermometersMayBeColder) {
    EXPECT_TRUE(possibleRange(SensorKind::temperature, "lm75").contains(-40));
}

TEST(SensorValue, OnlyTemperaturesDependOnTheDevice) {
    EXPECT_TRUE(possibleRange(SensorKind::voltage, "nct6798").contains(0));
    EXPECT_TRUE(possibleRange(SensorKind::fan, "nct6798").contains(0));
}

} // namespace
} // namespace kelvinbar::sensor_value_test
