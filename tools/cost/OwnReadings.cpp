#include "tools/cost/OwnReadings.h"

#include "base/NumberText.h"
#include "store/ValueNormalization.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::string_view keyStart = "kelvinbar/";

/// The first two digits that are not zero: "0.00042".
std::string twoDigitText(double number) {
    const int decimals = 1 - static_cast<int>(std::floor(std::log10(number)));
    const std::string digits = fixedText(number * std::pow(10, decimals), 0);
    return std::string("0.").append(static_cast<std::size_t>(decimals) - digits.size(), '0').append(digits);
}

/// A program that does little costs less than the decimals of a sensor's value tell.
std::string valueText(double number, std::string_view unit) {
    constexpr double least = 1e-9;
    constexpr double fewDecimals = 0.01;
    const bool isSmall = number >= least && number < fewDecimals;
    return isSmall ? twoDigitText(number) : normalizeValue("", "", number, unit).value;
}

/// Adds readings of one program.
class OwnReadingList {
  public:
    explicit OwnReadingList(std::string_view program) : program_(program) {}

    void add(std::string_view key, std::string_view name, std::optional<double> number,
             std::string_view unit = {}) {
        if (!number) return;
        SMCReading reading;
        reading.key = std::string(keyStart).append(key);
        reading.name = name;
        reading.type = program_;
        reading.value = valueText(*number, unit);
        reading.numericValue = number;
        reading.unit = unit;
        reading.raw = reading.value;
        reading.status = "OK";
        readings_.push_back(std::move(reading));
    }

    [[nodiscard]] std::vector<SMCReading> readings() && { return std::move(readings_); }

  private:
    std::string_view program_;
    std::vector<SMCReading> readings_;
};

std::optional<double> inMegabytes(std::optional<std::uint64_t> bytes) {
    if (!bytes) return std::nullopt;
    return static_cast<double>(*bytes) / (1024 * 1024);
}

std::optional<double> asNumber(std::optional<std::uint64_t> count) {
    return count ? std::optional(static_cast<double>(*count)) : std::nullopt;
}

} // namespace

std::vector<SMCReading> ownReadings(const ProgramCost& cost, std::string_view program) {
    OwnReadingList list(program);
    list.add("cpu-time", "CPU Time a Minute", cost.cpuTimePerMinute, "s");
    list.add("wake-ups", "Wake-Ups a Minute", cost.wakeUpsPerMinute);
    list.add("measured-time", "Measured Time", cost.measuredTime, "s");
    list.add("resident-memory", "Resident Memory", inMegabytes(cost.residentMemory), "MB");
    list.add("private-memory", "Private Memory", inMegabytes(cost.privateMemory), "MB");
    list.add("accesses", "Accesses a Pass", asNumber(cost.accessesOfLastPass));
    return std::move(list).readings();
}

bool isOwnReading(const SMCReading& reading) { return reading.key.starts_with(keyStart); }

std::string_view categoryTitle(const SMCReading& reading) {
    return isOwnReading(reading) ? ownCategoryTitle : rawValue(reading.category);
}

} // namespace kelvinbar
