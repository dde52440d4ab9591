#pragma once

#include <optional>
#include <string_view>

namespace kelvinbar {

/// What a unit measures, and the base unit of that. Monitoring systems expect base units, people do not: a
/// battery's charge is in mAh for people and in coulombs for a time series.
struct BaseUnit {
    std::string_view quantity; ///< "temperature"; lower case, words joined by "_"
    std::string_view name;     ///< of the base unit, in the plural: "celsius", "volts"; lower case
    double multiplier = 1;     ///< with the divisor, base units in one unit; both are whole numbers
    double divisor = 1;

    /// `value` in the base unit.
    [[nodiscard]] constexpr double converted(double value) const { return value * multiplier / divisor; }

    friend bool operator==(const BaseUnit&, const BaseUnit&) = default;
};

/// The base unit of a reading's unit, such as "mAh". No value for an empty or unknown unit. Any thread.
std::optional<BaseUnit> baseUnitOf(std::string_view unit);

} // namespace kelvinbar
