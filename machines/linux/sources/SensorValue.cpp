#include "machines/linux/sources/SensorValue.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace kelvinbar {

namespace {

struct Range {
    SensorKind kind;
    double lowest;
    double highest;
};

/// Kinds that are not here can have any value.
constexpr std::array ranges{
    Range{SensorKind::temperature, -100, 200},   Range{SensorKind::voltage, -1000, 1000},
    Range{SensorKind::current, -10'000, 10'000}, Range{SensorKind::power, -100'000, 100'000},
    Range{SensorKind::energy, 0, 100'000},       Range{SensorKind::fan, 0, 30'000},
    Range{SensorKind::fanMinimum, 0, 30'000},    Range{SensorKind::fanMaximum, 0, 30'000},
    Range{SensorKind::fanTarget, 0, 30'000},     Range{SensorKind::fanSafe, 0, 30'000},
    Range{SensorKind::charge, 0, 1'000'000},     Range{SensorKind::count, 0, 1'000'000},
    Range{SensorKind::duration, 0, 1'000'000},   Range{SensorKind::percent, 0, 100},
};

constexpr std::array types{
    SensorType{"flt ", SensorType::Form::floating, 4},
    SensorType{"ui16", SensorType::Form::whole, 2, 1, 0, 65535},
    SensorType{"ui32", SensorType::Form::whole, 4, 1, 0, 4294967295.0},
    SensorType{"ui8 ", SensorType::Form::whole, 1, 1, 0, 255},
    SensorType{"flag", SensorType::Form::whole, 1, 1, 0, 1},
    SensorType{"sp78", SensorType::Form::whole, 2, 256, -32768, 32767},
    SensorType{"fpe2", SensorType::Form::whole, 2, 4, 0, 65535},
};

constexpr SensorType textType{"ch8*", SensorType::Form::text, 32};

/// Floats are little-endian in controllers.
std::optional<SMCBytes> encodedFloat(double value) {
    if (std::abs(value) > std::numeric_limits<float>::max()) return std::nullopt;
    const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
    SMCBytes bytes{};
    for (std::size_t place = 0; place < 4; ++place) {
        bytes[place] = static_cast<std::uint8_t>(bits >> (8 * place));
    }
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

const SensorType& sensorType(std::string_view name) {
    const auto* const type = std::ranges::find(types, name, &SensorType::name);
    return type == types.end() ? textType : *type;
}

std::optional<SMCBytes> encodedNumber(const SensorType& type, double value) {
    if (type.form == SensorType::Form::text || !std::isfinite(value)) return std::nullopt;
    if (type.form == SensorType::Form::floating) return encodedFloat(value);
    const double scaled = std::round(value * type.scale);
    if (scaled < type.lowest || scaled > type.highest) return std::nullopt;
    return encodedWhole(static_cast<std::int64_t>(scaled), type.size);
}

SMCBytes encodedText(std::string_view text) {
    SMCBytes bytes{};
    std::ranges::copy(text.substr(0, textType.size), bytes.begin());
    return bytes;
}

} // namespace kelvinbar
