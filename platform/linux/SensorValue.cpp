#include "platform/linux/SensorValue.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace kelvinbar {

namespace {

struct Range {
    SensorKind kind;
    double lowest;
    double highest;
};

/// Kinds that are not here can have any value.
constexpr std::array ranges{
    Range{SensorKind::temperature, -100, 200},    Range{SensorKind::voltage, -1000, 1000},
    Range{SensorKind::current, -10'000, 10'000},  Range{SensorKind::power, -100'000, 100'000},
    Range{SensorKind::energy, 0, 100'000},        Range{SensorKind::fan, 0, 30'000},
    Range{SensorKind::fanMinimum, 0, 30'000},     Range{SensorKind::fanMaximum, 0, 30'000},
    Range{SensorKind::fanTarget, 0, 30'000},      Range{SensorKind::fanSafe, 0, 30'000},
    Range{SensorKind::charge, 0, 1'000'000},      Range{SensorKind::count, 0, 1'000'000},
    Range{SensorKind::duration, 0, 1'000'000},    Range{SensorKind::percent, 0, 100},
};

/// Data types by how they hold a number: as a float, or as a whole number times a scale.
struct NumberType {
    std::string_view name;
    std::uint32_t size;
    double scale; ///< 0 for a float
    double lowest;
    double highest;
};

constexpr std::array numberTypes{
    NumberType{"flt ", 4, 0, 0, 0},           NumberType{"sp78", 2, 256, -32768, 32767},
    NumberType{"fpe2", 2, 4, 0, 65535},       NumberType{"ui8 ", 1, 1, 0, 255},
    NumberType{"flag", 1, 1, 0, 1},           NumberType{"ui16", 2, 1, 0, 65535},
    NumberType{"ui32", 4, 1, 0, 4294967295.0},
};

constexpr std::uint32_t textSize = 32;

const NumberType* numberType(std::string_view name) {
    const auto* const type = std::ranges::find(numberTypes, name, &NumberType::name);
    return type == numberTypes.end() ? nullptr : type;
}

/// Floats are little-endian in controllers.
SMCBytes encodedFloat(double value) {
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    SMCBytes bytes{};
    for (std::size_t place = 0; place < 4; ++place) bytes[place] = static_cast<std::uint8_t>(bits >> (8 * place));
    return bytes;
}

/// Whole numbers are big-endian.
SMCBytes encodedWhole(std::int64_t number, std::uint32_t size) {
    SMCBytes bytes{};
    for (std::uint32_t place = 0; place < size; ++place) {
        bytes[place] = static_cast<std::uint8_t>(number >> (8 * (size - 1 - place)));
    }
    return bytes;
}

} // namespace

bool isPossibleValue(SensorKind kind, double value) {
    const auto* const range = std::ranges::find(ranges, kind, &Range::kind);
    return range == ranges.end() || (value >= range->lowest && value <= range->highest);
}

std::uint32_t sizeOfType(std::string_view type) {
    const NumberType* const found = numberType(type);
    return found == nullptr ? textSize : found->size;
}

std::optional<SMCBytes> encodedNumber(std::string_view type, double value) {
    const NumberType* const found = numberType(type);
    if (found == nullptr) return std::nullopt;
    if (found->scale == 0) return encodedFloat(value);
    const double scaled = std::round(value * found->scale);
    if (scaled < found->lowest || scaled > found->highest) return std::nullopt;
    return encodedWhole(static_cast<std::int64_t>(scaled), found->size);
}

SMCBytes encodedText(std::string_view text) {
    SMCBytes bytes{};
    std::ranges::copy(text.substr(0, textSize), bytes.begin());
    return bytes;
}

} // namespace kelvinbar
