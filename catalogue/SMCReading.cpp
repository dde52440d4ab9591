#include "catalogue/SMCReading.h"

#include "base/Text.h"
#include "catalogue/Hashing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace kelvinbar {

namespace {

/// Texts that drivers return in place of a value, in lower case.
constexpr std::array<std::string_view, 12> placeholders{
    "—", "-", "--", "---", "n/a", "na", "nan", "null", "nil", "unsupported", "unavailable", "no value",
};

/// Whether `text` says that there is no value. "nan" and "inf" count anywhere in the text: drivers spell
/// missing numbers in many ways ("-nan", "nan(ind)"), and no sensor value contains these letters.
bool deniesAValue(std::string_view text) {
    const std::string lower = asciiLowercased(text);
    return lower.empty() || std::ranges::find(placeholders, lower) != placeholders.end() ||
           contains(lower, "nan") || contains(lower, "inf");
}

} // namespace

std::string SMCReading::displayValue() const {
    std::string text(trimmed(value));
    const std::string_view unitText = trimmed(unit);
    if (!unitText.empty() && !text.ends_with(unitText)) text.append(" ").append(unitText);
    return text;
}

bool SMCReading::hasDisplayableValue() const {
    if (deniesAValue(trimmed(value))) return false;
    return numericValue ? std::isfinite(*numericValue) : !trimmed(raw).empty();
}

Dictionary encodedReading(const SMCReading& reading) {
    Dictionary record;
    record.append("key", reading.key);
    record.append("name", reading.name);
    record.append("category", std::string(rawValue(reading.category)));
    record.append("type", reading.type);
    record.append("value", reading.value);
    if (reading.numericValue) record.append("numericValue", *reading.numericValue);
    record.append("unit", reading.unit);
    record.append("raw", reading.raw);
    record.append("status", reading.status);
    return record;
}

std::optional<SMCReading> decodedReading(const Dictionary& record) {
    SMCReading reading;
    bool complete = true;
    const auto take = [&](std::string_view name, std::string& field) {
        const auto* text = record.find<std::string>(name);
        complete = complete && text != nullptr;
        if (text != nullptr) field = *text;
    };
    take("key", reading.key);
    take("name", reading.name);
    take("type", reading.type);
    take("value", reading.value);
    take("unit", reading.unit);
    take("raw", reading.raw);
    take("status", reading.status);
    std::string title;
    take("category", title);

    if (const Value* number = record.find("numericValue")) {
        reading.numericValue = numberIn(*number);
        complete = complete && reading.numericValue.has_value();
    }
    const auto category = categoryFromRawValue(title);
    if (!complete || !category) return std::nullopt;
    reading.category = *category;
    return reading;
}

} // namespace kelvinbar

std::size_t
std::hash<kelvinbar::SMCReading>::operator()(const kelvinbar::SMCReading& reading) const noexcept {
    const std::hash<std::string_view> text;
    const double number = reading.numericValue.value_or(0);
    return kelvinbar::combinedHash({text(reading.key), text(reading.name), text(rawValue(reading.category)),
                                    text(reading.type), text(reading.value),
                                    reading.numericValue ? std::size_t{1} : std::size_t{0},
                                    std::hash<double>()(number == 0 ? 0 : number), text(reading.unit),
                                    text(reading.raw), text(reading.status)});
}
