#include "smc/NativeMacSupport.h"

#include "base/NumberText.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::array<std::string_view, 4> thermalStates{"Nominal", "Fair", "Serious", "Critical"};
constexpr std::string_view unknownThermalState = "Unknown";

SMCReading textReading(std::string_view key, std::string_view name, SMCCategory category,
                       const std::string& value) {
    return {.key = std::string(key),
            .name = std::string(name),
            .category = category,
            .type = std::string(nativeType),
            .value = value,
            .numericValue = std::nullopt,
            .unit = "",
            .raw = value,
            .status = "OK"};
}

std::optional<SMCReading> activeCores(int count) {
    if (count < 1) return std::nullopt;
    SMCReading reading = textReading("NCOR", "Active CPU Cores", SMCCategory::cpu, fixedText(count, 0));
    reading.numericValue = count;
    reading.raw = fixedText(count, 1);
    return reading;
}

std::optional<SMCReading> thermalState(const SystemInformation& system) {
    const auto state = system.thermalState();
    if (!state) return std::nullopt;
    return textReading("NTHR", system.thermalStateName(), SMCCategory::thermal,
                       std::string(thermalStateText(*state)));
}

std::optional<SMCReading> physicalMemory(std::uint64_t bytes) {
    if (bytes == 0) return std::nullopt;
    const double gibibytes = static_cast<double>(bytes) / 1073741824.0;
    SMCReading reading = textReading("NRAM", "Physical Memory", SMCCategory::memory, fixedText(gibibytes, 1));
    reading.numericValue = gibibytes;
    reading.unit = "GB";
    reading.raw = std::to_string(bytes);
    return reading;
}

} // namespace

std::string_view thermalStateText(int state) {
    const bool known = state >= 0 && static_cast<std::size_t>(state) < thermalStates.size();
    return known ? thermalStates.at(static_cast<std::size_t>(state)) : unknownThermalState;
}

std::optional<int> thermalStateNamed(std::string_view text) {
    if (text == unknownThermalState) return -1;
    const auto* const found = std::ranges::find(thermalStates, text);
    return found == thermalStates.end() ? std::nullopt
                                        : std::optional(static_cast<int>(found - thermalStates.begin()));
}

std::optional<SMCReading> NativeMacSupport::cpuModel() const {
    auto model = sysctlString("machdep.cpu.brand_string");
    if (!model) model = sysctlString("hw.model");
    if (!model) return std::nullopt;
    return textReading("NCPU", "CPU Model", SMCCategory::cpu, *model);
}

std::vector<SMCReading> NativeMacSupport::readings() const {
    std::vector<SMCReading> readings;
    const auto keep = [&](std::optional<SMCReading> reading) {
        if (reading && reading->hasDisplayableValue()) readings.push_back(*std::move(reading));
    };
    keep(cpuModel());
    keep(textReading("NARC", "Architecture", SMCCategory::cpu, system_.architecture()));
    keep(activeCores(system_.activeProcessorCount()));
    keep(physicalMemory(system_.physicalMemory()));
    keep(thermalState(system_));
    keep(textReading("NLPM", "Low Power Mode", SMCCategory::power,
                     system_.isLowPowerModeEnabled() ? "Enabled" : "Disabled"));
    return readings;
}

std::optional<std::string> NativeMacSupport::sysctlString(std::string_view name) const {
    const auto bytes = system_.systemBytes(name);
    if (!bytes || bytes->size() < 2) return std::nullopt;
    const std::string text = bytes->substr(0, bytes->find('\0'));
    const std::string_view value = trimmed(text);
    if (value.empty() || !isValidUtf8(value)) return std::nullopt;
    return std::string(value);
}

} // namespace kelvinbar
