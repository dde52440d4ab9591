#include "tools/formats/SummaryFormat.h"

#include "base/Text.h"
#include "sensors/RawReading.h"
#include "tools/PrintedText.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <vector>

namespace kelvinbar {

namespace {

using Readings = std::vector<SMCReading>;

/// In names of settings and of other numbers that are no measurements.
constexpr std::array<std::string_view, 8> wordsOfSettings{"limit", "minimum", "maximum",  "target",
                                                          "safe",  "cap",     "critical", "calibration"};

/// In names of meters that measure the whole machine.
constexpr std::array<std::string_view, 4> wordsOfWholeMachine{"system power", "platform power",
                                                              "system total", "power supply total"};

template <typename Words>
bool hasWordOf(const Words& words, const SMCReading& reading) {
    const std::string name = asciiLowercased(reading.name);
    return std::ranges::any_of(words, [&](std::string_view word) { return contains(name, word); });
}

/// Measurements in this unit.
Readings measuredIn(std::string_view unit, const Readings& readings) {
    Readings measured;
    for (const SMCReading& reading : readings) {
        const bool isMeasured = reading.numericValue && !hasWordOf(wordsOfSettings, reading);
        if (isMeasured && reading.unit == unit) measured.push_back(reading);
    }
    return measured;
}

std::string nameAndValue(const SMCReading& reading) {
    return printableText(reading.displayValue() + "  " + reading.name);
}

std::string highest(const Readings& readings) {
    const auto found = std::ranges::max_element(readings, {}, &SMCReading::numericValue);
    return found == readings.end() ? "none" : nameAndValue(*found);
}

/// The chip of a self-named key; empty for all keys of a controller.
std::string_view chipOf(const SMCReading& reading) {
    return isSelfNamedKey(reading.key) ? std::string_view(reading.key).substr(0, reading.key.rfind('/')) : "";
}

bool isOfChip(const SMCReading& reading, std::string_view chip, std::string_view nameEnd) {
    return chipOf(reading) == chip && asciiLowercased(reading.name).ends_with(nameEnd);
}

/// Whether the chip is graphics in the processor's package: the power that it tells is that of the package.
bool isInProcessor(std::string_view chip, const Readings& readings) {
    // The driver tells this voltage of such graphics only.
    return chip.starts_with("amdgpu-") && std::ranges::any_of(readings, [&](const SMCReading& reading) {
               return isOfChip(reading, chip, "soc voltage");
           });
}

/// The chip whose power contains that of the reading. Power zones are chips: cores and uncore, as
/// "intel-rapl-0-1", are parts of a package, "intel-rapl-0"; its memory is no part of it.
std::string_view meterOf(const SMCReading& power, const Readings& readings) {
    constexpr std::string_view packages = "intel-rapl-";
    constexpr std::string_view firstPackage = "intel-rapl-0";
    const std::string_view chip = chipOf(power);
    if (isInProcessor(chip, readings)) return firstPackage;
    if (!chip.starts_with(packages) || isOfChip(power, chip, "memory power")) return chip;
    return chip.substr(0, chip.find('-', packages.size()));
}

/// The total of a controller, whose name in the catalogue tells a part of it.
bool isControllersTotal(const SMCReading& power) { return power.key == "PSTR"; }

/// A meter that is not wired reads 0.
bool isOfWholeMachine(const SMCReading& power) {
    const bool isTotal = isControllersTotal(power) || hasWordOf(wordsOfWholeMachine, power);
    return isTotal && *power.numericValue > 0;
}

std::string totalPower(const Readings& readings) {
    std::map<std::string_view, double> highestOfMeters;
    const Readings powers = measuredIn("W", readings);
    const auto whole = std::ranges::find_if(powers, isOfWholeMachine);
    if (whole != powers.end()) {
        return isControllersTotal(*whole) ? whole->displayValue() : nameAndValue(*whole);
    }
    for (const SMCReading& power : powers) {
        if (power.category == SMCCategory::battery) continue;
        double& highest = highestOfMeters[meterOf(power, readings)];
        highest = std::max(highest, *power.numericValue);
    }
    if (highestOfMeters.empty()) return "none";
    double total = 0;
    for (const auto& [meter, power] : highestOfMeters) total += power;
    return numberText(total, "W") + " W";
}

/// The first reading of the machine's batteries for which this holds; null if there is none.
const SMCReading* ofBattery(const Readings& readings, const std::function<bool(const SMCReading&)>& holds) {
    const auto found = std::ranges::find_if(readings, [&](const SMCReading& reading) {
        const bool isOfDevice = reading.name.starts_with("Device"); // of a mouse, for example
        return reading.category == SMCCategory::battery && !isOfDevice && holds(reading);
    });
    return found == readings.end() ? nullptr : &*found;
}

const SMCReading* batteryNumber(const Readings& readings, std::string_view unit, std::string_view word) {
    return ofBattery(readings, [&](const SMCReading& reading) {
        const bool hasWord = contains(asciiLowercased(reading.name), word);
        return reading.numericValue && reading.unit == unit && hasWord;
    });
}

/// In percent: as the battery tells it, or remaining of full charge.
std::string batteryLevel(const Readings& readings) {
    if (const auto* level = batteryNumber(readings, "%", "")) return level->displayValue();
    const auto* remaining = batteryNumber(readings, "mAh", "remaining");
    const auto* full = batteryNumber(readings, "mAh", "full");
    if (remaining == nullptr || full == nullptr || *full->numericValue <= 0) return {};
    const double level = 100 * *remaining->numericValue / *full->numericValue;
    return numberText(level, "%") + " %";
}

std::string battery(const Readings& readings) {
    const auto* state = ofBattery(readings, [](const SMCReading& reading) {
        return !reading.numericValue && contains(asciiLowercased(reading.name), "status");
    });
    std::string text = batteryLevel(readings);
    if (state != nullptr) text.append(text.empty() ? "" : "  ").append(printableText(state->value));
    return text.empty() ? "none" : text;
}

std::string summaryText(const Report& report) {
    const Readings& readings = report.readings;
    return "Hottest      " + highest(measuredIn("°C", readings)) + "\nFastest fan  " +
           highest(measuredIn("RPM", readings)) + "\nPower        " + totalPower(readings) +
           "\nBattery      " + battery(readings) + "\n";
}

} // namespace

ReportWriter makeSummaryWriter(const FormatSettings& /*settings*/) { return summaryText; }

} // namespace kelvinbar
