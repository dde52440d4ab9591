#include "store/ValueNormalization.h"

#include "base/NumberText.h"
#include "sensors/RawReading.h"

#include <cmath>
#include <utility>

namespace kelvinbar {

namespace {

/// Whether `number` is in thousandths of `unit`. Some controllers report batteries and chargers that way,
/// and the thresholds are above what a battery can have. The one for power is higher because chargers report
/// watts. Sources that name their own readings always use whole units.
bool isInThousandths(std::string_view key, double number, std::string_view unit) {
    if (isSelfNamedKey(key)) return false;
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

std::optional<double> numericValue(std::optional<double> number) {
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
