#include "machines/linux/sources/SensorValue.h"

#include "machines/linux/naming/SensorWords.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::array<std::pair<SensorKind, ValueRange>, 14> ranges{{
    {SensorKind::temperature, {-100, 200}},
    {SensorKind::voltage, {-1000, 1000}},
    {SensorKind::current, {-10'000, 10'000}},
    {SensorKind::power, {-100'000, 100'000}},
    {SensorKind::energy, {0, 100'000}},
    {SensorKind::fan, {0, 30'000}},
    {SensorKind::fanMinimum, {0, 30'000}},
    {SensorKind::fanMaximum, {0, 30'000}},
    {SensorKind::fanTarget, {0, 30'000}},
    {SensorKind::fanSafe, {0, 30'000}},
    {SensorKind::charge, {0, 1'000'000}},
    {SensorKind::count, {0, 1'000'000}},
    {SensorKind::duration, {0, 1'000'000}},
    {SensorKind::percent, {0, 100}},
}};

/// Devices on whose boards thermistor inputs may be left unconnected.
constexpr std::array<std::string_view, 7> boards{mainboardWords, "ThinkPad", "Dell",  "HP",
                                                 "ASUS",         "Acer",     "Lenovo"};

/// Working silicon stays inside. An open thermistor input of a mainboard reads near the ends of its scale,
/// most often -62, -55, 0 or 127 °C.
std::optional<ValueRange> temperatureRange(std::string_view type) {
    const DeviceRow* const device = deviceRowOf(type);
    if (device == nullptr) return std::nullopt;
    if (std::ranges::find(boards, device->words) != boards.end()) return ValueRange{1, 120};
    const bool isSilicon = device->category == SMCCategory::cpu || device->category == SMCCategory::gpu ||
                           device->category == SMCCategory::storage;
    return isSilicon ? std::optional(ValueRange{-20, 150}) : std::nullopt;
}

} // namespace

ValueRange possibleRange(SensorKind kind, std::string_view type) {
    if (kind == SensorKind::temperature) {
        if (const auto range = temperatureRange(type)) return *range;
    }
    constexpr double any = std::numeric_limits<double>::max();
    const auto* const found = std::ranges::find(ranges, kind, &std::pair<SensorKind, ValueRange>::first);
    return found == ranges.end() ? ValueRange{-any, any} : found->second;
}

} // namespace kelvinbar
