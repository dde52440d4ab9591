#include "machines/replay/ReplaySystemInformation.h"

#include <utility>

namespace kelvinbar {

ReplaySystemInformation::ReplaySystemInformation(RecordedFacts facts) : facts_(std::move(facts)) {}

std::optional<std::string> ReplaySystemInformation::systemBytes(std::string_view name) const {
    if (name != "machdep.cpu.brand_string" || !facts_.processorModel) return std::nullopt;
    return *facts_.processorModel + '\0';
}

int ReplaySystemInformation::activeProcessorCount() const { return facts_.activeProcessors.value_or(0); }

std::uint64_t ReplaySystemInformation::physicalMemory() const { return facts_.physicalMemory.value_or(0); }

std::string ReplaySystemInformation::architecture() const { return facts_.architecture; }

std::optional<int> ReplaySystemInformation::thermalState() const { return facts_.thermalState; }

std::string_view ReplaySystemInformation::thermalStateName() const { return facts_.thermalStateName; }

bool ReplaySystemInformation::isLowPowerModeEnabled() const { return facts_.lowPowerMode; }

} // namespace kelvinbar
