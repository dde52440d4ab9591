#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// What a source returns for one key, before the store names, scales and sorts it.
///
/// A controller fills in the first seven fields only: the catalogue knows the name, the category and the unit
/// of its keys. Every other source fills in all of them.
struct RawReading {
    std::string key;
    std::string type;                   ///< the source's own type code, for example "flt " or "ioreg"
    std::string value;                  ///< the value as text, without a unit
    std::optional<double> numericValue; ///< absent for texts and undecodable bytes; may be infinite or NaN
    std::string raw;                    ///< what the source read, before decoding
    std::uint32_t size = 0;             ///< number of raw bytes; 0 where the source has none
    std::string status = "OK";
    std::optional<std::string> name;
    std::optional<std::string> category; ///< a category's title; any other text counts as absent
    std::optional<std::string> unit;

    friend bool operator==(const RawReading&, const RawReading&) = default;
};

/// The value and the raw text of a reading whose device does not answer.
inline constexpr std::string_view noAnswer = "no answer";

/// `reading` as it is shown while its device does not answer: without a number and a unit.
inline RawReading unansweredReading(RawReading reading) {
    reading.value = reading.raw = noAnswer;
    reading.numericValue.reset();
    reading.size = 0;
    reading.unit = "";
    return reading;
}

/// Whether `key` belongs to a source that names its own readings, such as "k10temp-pci-00c3/temp1". The keys
/// of controllers and registry fans have four characters, and the catalogue names them.
inline bool isSelfNamedKey(std::string_view key) {
    return key.size() != 4 && key.find('/') != std::string_view::npos;
}

} // namespace kelvinbar
