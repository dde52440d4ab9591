#include "catalogue/BaseUnit.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::base_unit_test {

namespace {

/// Quantity and base unit, and 65 of the unit in base units.
struct Expected {
    std::string_view unit;
    std::string_view quantity;
    std::string_view name;
    double sixtyFive;
};

TEST(BaseUnit, OfEveryUnitOfAReading) {
    for (const auto& [unit, quantity, name, sixtyFive] :
         {Expected{"°C", "temperature", "celsius", 65}, Expected{"RPM", "fan_speed", "rpm", 65},
          Expected{"V", "voltage", "volts", 65}, Expected{"A", "current", "amperes", 65},
          Expected{"W", "power", "watts", 65}, Expected{"mAh", "charge", "coulombs", 234},
          Expected{"GB", "memory", "bytes", 69793218560}, Expected{"MHz", "frequency", "hertz", 65'000'000},
          Expected{"MB", "memory", "bytes", 68157440}, Expected{"s", "duration", "seconds", 65},
          Expected{"min", "duration", "seconds", 3900}, Expected{"%", "level", "ratio", 0.65}}) {
        const auto base = baseUnitOf(unit);
        ASSERT_TRUE(base) << unit;
        EXPECT_EQ(base->quantity, quantity);
        EXPECT_EQ(base->name, name);
        EXPECT_EQ(base->converted(65), sixtyFive) << unit;
    }
}

TEST(BaseUnit, AddsNoErrorOfItsOwn) {
    EXPECT_EQ(baseUnitOf("mAh")->converted(4037), 14533.2);
    EXPECT_EQ(baseUnitOf("%")->converted(7), 0.07);
    EXPECT_EQ(baseUnitOf("°C")->converted(45.85), 45.85);
}

TEST(BaseUnit, IsAbsentForOtherTexts) {
    for (const std::string_view unit : {"", " ", "C", "°c", "rpm", "mV"}) {
        EXPECT_EQ(baseUnitOf(unit), std::nullopt) << unit;
    }
}

} // namespace
} // namespace kelvinbar::base_unit_test
