#include "store/ValueNormalization.h"

#include "base/NumberText.h"

#include <cmath>
#include <utility>

namespace kelvinbar {

namespace {

/// Whether `number` under `key` is taken for thousandths of `unit`. Batteries and chargers report so on some
/// machines; no battery has such voltages or currents. Power has a higher threshold, and chargers report
/// it in watts.
bool isInThousandths(std::string_view key, double number, std::string_view unit) {
    const bool isBattery = key.starts_with('B');
    const bool isBatteryOrCharger = isBattery || key.starts_with("CH");
    if (unit == "V" || unit == "A") return isBatteryOrCharger && std::fabs(number) > 100;
    return unit == "W" && isBattery && std::fabs(number) > 1000;
}

std::string withoutTrailingZeros(std::string text) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

std::string valueText(double number) {
    if (distanceFromWhole(number) < 0.005) return fixedText(number, 0);
    if (std::fabs(number) < 10) return withoutTrailingZeros(fixedText(number, 3));
    return fixedText(number, 2);
}

} // namespace

std::optional<double> numericValue(const Value* entry) {
    const auto number = entry == nullptr ? std::nullopt : numberIn(*entry);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

NormalizedValue normalizeValue(std::string_view key, std::string rawValue, std::optional<double> numeric,
                               std::string_view unit) {
    if (!numeric) return {std::move(rawValue), std::nullopt};
    double number = *numeric;
    if (isInThousandths(key, number, unit)) number /= 1000;

    const bool isSpeed = unit == "RPM";
    if (isSpeed && !(number >= 0)) number = 0;
    std::string text = isSpeed ? fixedText(std::round(number), 0) : valueText(number);
    return {std::move(text), std::isfinite(number) ? number : numeric};
}

} // namespace kelvinbar
