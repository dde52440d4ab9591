#pragma once

#include "base/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The finite number in a result's "numericValue" entry; nothing for an absent entry (null), one that is no
/// number, infinity and NaN. Any thread.
std::optional<double> numericValue(const Value* entry);

struct NormalizedValue {
    std::string value;
    std::optional<double> numeric;

    friend bool operator==(const NormalizedValue&, const NormalizedValue&) = default;
};

/// The value text and number of a reading: `numeric` brought from milli-units to `unit` where controllers
/// are known to report those, and printed as suits the unit. Without a number, `rawValue` as it is.
/// The text has a decimal point under every locale. Any thread.
NormalizedValue normalizeValue(std::string_view key, std::string rawValue, std::optional<double> numeric,
                               std::string_view unit);

} // namespace kelvinbar
