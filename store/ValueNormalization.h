#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// A result's number if it is finite, otherwise nothing. Any thread.
std::optional<double> numericValue(std::optional<double> number);

struct NormalizedValue {
    std::string value;
    std::optional<double> numeric;

    friend bool operator==(const NormalizedValue&, const NormalizedValue&) = default;
};

/// The value text and number of a reading. Converts `numeric` from milli-units to `unit` where controllers
/// are known to report milli-units, and formats it as suits the unit. Returns `rawValue` unchanged when there
/// is no number. The text has a decimal point in every locale. Any thread.
NormalizedValue normalizeValue(std::string_view key, std::string rawValue, std::optional<double> numeric,
                               std::string_view unit);

} // namespace kelvinbar
