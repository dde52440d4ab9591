#include "catalogue/BaseUnit.h"

#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

struct UnitRow {
    std::string_view unit;
    BaseUnit base;
};

/// Revolutions a minute stay: everybody counts fans that way.
constexpr std::array<UnitRow, 12> unitRows{{
    {"°C", {"temperature", "celsius"}},
    {"RPM", {"fan_speed", "rpm"}},
    {"V", {"voltage", "volts"}},
    {"A", {"current", "amperes"}},
    {"W", {"power", "watts"}},
    {"mAh", {"charge", "coulombs", 36, 10}},
    {"GB", {"memory", "bytes", 1024.0 * 1024 * 1024, 1}},
    {"MB", {"memory", "bytes", 1024.0 * 1024, 1}},
    {"MHz", {"frequency", "hertz", 1'000'000, 1}},
    {"min", {"duration", "seconds", 60, 1}},
    {"s", {"duration", "seconds"}},
    {"%", {"level", "ratio", 1, 100}},
}};

} // namespace

std::optional<BaseUnit> baseUnitOf(std::string_view unit) {
    const auto* const row = std::ranges::find(unitRows, unit, &UnitRow::unit);
    return row == unitRows.end() ? std::nullopt : std::optional(row->base);
}

} // namespace kelvinbar
