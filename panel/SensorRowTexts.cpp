#include "panel/SensorRowTexts.h"

#include "base/Text.h"
#include "store/ValueNormalization.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace kelvinbar {

namespace {

using Replacement = std::pair<std::string_view, std::string_view>;

constexpr std::array<Replacement, 3> shorterWords{{{"Temperature", "Temp"}, {"Intel ", ""}, {"Total", ""}}};
constexpr std::array<Replacement, 5> shorterUnits{
    {{" °C", "°"}, {"°C", "°"}, {" RPM", " rpm"}, {"MHz", " MHz"}, {"  ", " "}}};

std::string replaced(std::string_view text, std::span<const Replacement> replacements) {
    std::string result(text);
    for (const auto& [from, to] : replacements) result = replacedAll(result, from, to);
    return result;
}

} // namespace

std::string rowName(const SMCReading& reading) {
    const std::string shorter = replaced(fullName(reading), shorterWords);
    return std::string(trimmed(shorter));
}

std::string metadataLine(const SMCReading& reading) {
    std::string line(reading.type.empty() ? rawValue(reading.category) : reading.type);
    if (const std::string_view unit = trimmed(reading.unit); !unit.empty()) line.append(" • ").append(unit);
    return line;
}

std::string rowValue(const SMCReading& reading) {
    return replaced(trimmed(reading.displayValue()), shorterUnits);
}

std::string rowValue(const SMCReading& reading, double value) {
    SMCReading other = reading;
    other.value = normalizeValue(reading.key, {}, value, reading.unit).value;
    return rowValue(other);
}

std::string longestValueShape(const std::vector<const SMCReading*>& readings) {
    std::string longest;
    std::size_t greatestLength = 0;
    const SMCReading* number = nullptr;
    for (const SMCReading* const reading : readings) {
        if (!reading->numericValue) continue;
        if (number != nullptr && number->unit != reading->unit) return {};
        number = reading;
        std::string value = rowValue(*reading);
        const std::size_t length = characterCount(value);
        if (length <= greatestLength) continue;
        greatestLength = length;
        longest = std::move(value);
    }
    std::ranges::replace_if(longest, isDecimalDigit, '0');
    return longest;
}

std::string_view fullName(const SMCReading& reading) {
    const std::string_view name = trimmed(reading.name);
    return name.empty() ? std::string_view(reading.key) : name;
}

std::string clipboardLine(const SMCReading& reading) {
    return std::string(fullName(reading)) + "\t" + reading.displayValue();
}

std::vector<PanelColor> rowBackgroundColors(bool isMenuBarSelected, Accent accent) {
    if (!isMenuBarSelected) return {withOpacity(white, 0.05), withOpacity(black, 0.2)};
    return {withOpacity(pinRed, 0.155), withOpacity(shade(accent), 0.11), withOpacity(black, 0.22)};
}

} // namespace kelvinbar
