#pragma once

#include "base/Value.h"
#include "catalogue/SMCCategory.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace kelvinbar {

/// One sensor reading on its way from the access layer to the menu bar and the panel.
struct SMCReading {
    std::string key; ///< four-character SMC key, or a made-up one; unique in a set of readings
    std::string name;
    SMCCategory category = SMCCategory::unknown;
    std::string type;  ///< SMC data type ("ui16"), "ioreg" or "native"
    std::string value; ///< formatted, without unit
    std::optional<double> numericValue;
    std::string unit;   ///< "°C", "RPM", "W", "V", "A", "mAh", "GB" or empty
    std::string raw;    ///< the value's bytes as text, possibly empty
    std::string status; ///< "OK" or another short text, possibly empty

    /// The identity of the reading in lists: its key.
    [[nodiscard]] const std::string& id() const { return key; }

    /// The value with its unit, for people; the unit is not added to a value that ends with it.
    [[nodiscard]] std::string displayValue() const;

    /// Whether the reading shows a real value: no placeholder, no text with "nan" or "inf" in it, a finite
    /// number, or without a number some raw bytes.
    [[nodiscard]] bool hasDisplayableValue() const;

    friend bool operator==(const SMCReading&, const SMCReading&) = default;
};

/// `reading` as a keyed record: the field names as keys in the order of the fields, the category by its
/// title, `numericValue` only when present.
Dictionary encodedReading(const SMCReading& reading);

/// The reading in a keyed record; nothing when a required entry is missing or mistyped or the category's
/// title is unknown.
std::optional<SMCReading> decodedReading(const Dictionary& record);

} // namespace kelvinbar

/// All nine fields count; negative zero hashes as zero, as it compares.
template <>
struct std::hash<kelvinbar::SMCReading> {
    std::size_t operator()(const kelvinbar::SMCReading& reading) const noexcept;
};
