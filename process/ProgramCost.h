#pragma once

#include "process/CostMeter.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace kelvinbar {

/// What a program costs. What is not known has no value.
struct ProgramCost {
    std::optional<double> measuredTime;     ///< for how long the next two have been measured, in seconds
    std::optional<double> cpuTimePerMinute; ///< of all threads, in seconds
    std::optional<double> wakeUpsPerMinute;
    std::optional<std::uint64_t> residentMemory;     ///< bytes
    std::optional<std::uint64_t> privateMemory;      ///< bytes that no other process uses
    std::optional<std::uint64_t> accessesOfLastPass; ///< to files and drivers

    friend bool operator==(const ProgramCost&, const ProgramCost&) = default;
};

/// The cost of a process, without its accesses. A process that has run for less than `shortestTime` counts as
/// one that is started once in that time: a fraction of a second tells nothing about a minute.
ProgramCost programCost(const ProcessCost& cost, std::chrono::seconds shortestTime = std::chrono::minutes(1));

} // namespace kelvinbar
