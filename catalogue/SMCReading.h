#pragma once

#include "base/Value.h"
#include "catalogue/SMCCategory.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The type of a reading that the operating system reports without a sensor.
inline constexpr std::string_view nativeType = "native";

/// One sensor reading, ready for display: a source has read it, and the store has named and formatted it. A
/// plain value; it does not change when the sensor does.
struct SMCReading {
    std::string key;  ///< an SMC key or a key that its source made up; unique among all readings
    std::string name; ///< for people; not unique
    SMCCategory category = SMCCategory::unknown;
    std::string type;                   ///< SMC data type ("ui16"), "ioreg" or `nativeType`
    std::string value;                  ///< formatted, without unit
    std::optional<double> numericValue; ///< in `unit`; can be NaN or infinite
    std::string unit;                   ///< "°C", "RPM", "W", "V", "A", "mAh", "GB" or empty
    std::string raw;                    ///< the value's bytes as text, possibly empty
    std::string status;                 ///< "OK" or another short text, possibly empty

    /// The identity of the reading in lists: its key.
    [[nodiscard]] const std::string& id() const { return key; }

    /// The value with its unit, for people: "45.5 °C". The unit is omitted if the value already ends with it.
    [[nodiscard]] std::string displayValue() const;

    /// Whether the reading has a value worth displaying. False if the value is empty, a placeholder such as
    /// "n/a", or contains "nan" or "inf" in any case; if the number is not finite; or if there is neither a
    /// number nor raw text.
    [[nodiscard]] bool hasDisplayableValue() const;

    friend bool operator==(const SMCReading&, const SMCReading&) = default;
};

/// `reading` as a dictionary with the field names as keys, in the order of the fields. The category is stored
/// as its title. `numericValue` is omitted if it has no value.
Dictionary encodedReading(const SMCReading& reading);

/// The reading stored in `record`. No value if an entry other than `numericValue` is missing, any entry has
/// the wrong type, or the category is unknown. Ignores further entries.
std::optional<SMCReading> decodedReading(const Dictionary& record);

} // namespace kelvinbar

/// All nine fields count. Zero and negative zero are equal and therefore have the same hash.
template <>
struct std::hash<kelvinbar::SMCReading> {
    std::size_t operator()(const kelvinbar::SMCReading& reading) const noexcept;
};
