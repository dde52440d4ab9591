#include "machines/linux/naming/SensorMeaning.h"

#include "base/Text.h"
#include "machines/linux/naming/SensorWords.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kelvinbar {

namespace {

using enum SensorKind;

struct FeatureKind {
    std::string_view name;
    SensorKind kind;
};

/// Channels that the kernel numbers: "temp1".
constexpr std::array numberedFeatures{
    FeatureKind{"temp", temperature}, FeatureKind{"in", voltage},        FeatureKind{"curr", current},
    FeatureKind{"power", power},      FeatureKind{"energy", energy},     FeatureKind{"fan", fan},
    FeatureKind{"freq", frequency},   FeatureKind{"humidity", humidity}, FeatureKind{"pwm", percent},
};

constexpr std::array namedFeatures{
    FeatureKind{"energy", energy},
    FeatureKind{"voltage_now", voltage},
    FeatureKind{"current_now", current},
    FeatureKind{"power_now", power},
    FeatureKind{"charge_now", charge},
    FeatureKind{"charge_full", charge},
    FeatureKind{"charge_full_design", charge},
    FeatureKind{"energy_now", charge},
    FeatureKind{"energy_full", charge},
    FeatureKind{"energy_full_design", charge},
    FeatureKind{"cycle_count", count},
    FeatureKind{"capacity", percent},
    FeatureKind{"temp", temperature},
    FeatureKind{"temp_ambient", temperature},
    FeatureKind{"time_to_empty_now", duration},
    FeatureKind{"time_to_full_now", duration},
    FeatureKind{"status", text},
    FeatureKind{"online", flag},
};

template <std::size_t Count>
std::optional<SensorKind> kindIn(const std::array<FeatureKind, Count>& features, std::string_view name) {
    const auto feature = std::ranges::find(features, name, &FeatureKind::name);
    return feature == features.end() ? std::nullopt : std::optional(feature->kind);
}

std::string_view withoutDigitsAtEnd(std::string_view text) {
    while (!text.empty() && isDecimalDigit(text.back())) text.remove_suffix(1);
    return text;
}

SMCCategory categoryByKind(SensorKind kind, SMCCategory ofDevice) {
    switch (kind) {
    case voltage:
        return SMCCategory::voltages;
    case current:
        return SMCCategory::currents;
    case power:
    case energy:
        return SMCCategory::power;
    case fan:
    case percent:
        return SMCCategory::fans;
    default:
        return ofDevice;
    }
}

/// Whether a number is at the start, as leadingNumber() reads it.
bool isNumeric(std::string_view value) {
    if (value.starts_with('-') || value.starts_with('+')) value.remove_prefix(1);
    if (value.starts_with('.')) value.remove_prefix(1);
    return !value.empty() && isDecimalDigit(value.front());
}

} // namespace

bool isSensorKey(std::string_view key) {
    const std::size_t slash = key.rfind('/');
    if (slash == std::string_view::npos || slash == 0) return false;
    return kindOfFeature(key.substr(slash + 1)).has_value();
}

std::optional<SensorKind> kindOfFeature(std::string_view feature) {
    const std::string_view prefix = withoutDigitsAtEnd(feature);
    return prefix == feature ? kindIn(namedFeatures, feature) : kindIn(numberedFeatures, prefix);
}

std::string_view unitOf(SensorKind kind) {
    switch (kind) {
    case temperature:
        return "°C";
    case voltage:
        return "V";
    case current:
        return "A";
    case power:
    case energy:
        return "W";
    case charge:
        return "mAh";
    case duration:
        return "min";
    case percent:
    case humidity:
        return "%";
    case frequency:
        return "MHz";
    case fan:
        return "RPM";
    default:
        return "";
    }
}

SMCCategory categoryOf(std::string_view type, SensorKind kind, std::string_view name) {
    const DeviceRow* const device = deviceRowOf(type);
    const SMCCategory ofDevice = device == nullptr ? SMCCategory::thermal : device->category;
    if (ofDevice == SMCCategory::battery) return ofDevice;
    if (ofDevice == SMCCategory::thermal) {
        for (const CategoryRow& row : categoryRows()) {
            const bool isOfKind = !row.kind || *row.kind == kind;
            if (isOfKind && fitsPattern(row.chips, type) && fitsPattern(row.names, name)) return row.category;
        }
    }
    return categoryByKind(kind, ofDevice);
}

std::optional<LineMeaning> meaningOfLine(std::string_view key, std::string_view type, std::string_view name,
                                         std::string_view displayValue) {
    if (!isSensorKey(key)) return std::nullopt;
    const auto kind = kindOfFeature(key.substr(key.rfind('/') + 1));
    const std::string_view unit = isNumeric(displayValue) ? unitOf(*kind) : std::string_view();
    return LineMeaning{categoryOf(type, *kind, name), std::string(unit)};
}

} // namespace kelvinbar
