#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// `number` if it is finite, otherwise no value. Any thread.
std::optional<double> numericValue(std::optional<double> number);

struct NormalizedValue {
    std::string value;
    std::optional<double> numeric;

    friend bool operator==(const NormalizedValue&, const NormalizedValue&) = default;
};

/// The value text and number of a reading. Converts `numeric` to `unit` if controllers report it in
/// thousandths. The text has at most three decimals and a decimal point in every locale; without a number it
/// is `rawValue` unchanged. Speeds are whole and never negative. Any thread.
NormalizedValue normalizeValue(std::string_view key, std::string rawValue, std::optional<double> numeric,
                               std::string_view unit);

} // namespace kelvinbar
