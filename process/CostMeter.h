#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvinbar {

/// Memory of a process, in bytes.
struct MemoryUse {
    std::uint64_t resident = 0;      ///< all of its pages in memory
    std::uint64_t withoutShared = 0; ///< those of them that no other process uses

    friend bool operator==(const MemoryUse&, const MemoryUse&) = default;
};

/// What a process has cost during `time`.
struct ProcessCost {
    std::chrono::duration<double> time{0};    ///< without the time that the machine slept
    std::chrono::duration<double> cpuTime{0}; ///< of all threads, also those that have ended
    std::uint64_t wakeUps = 0;                ///< how often a thread has gone on after it had waited
    std::optional<MemoryUse> memory;          ///< now; no value where the system does not tell
};

/// Measures this process from the construction on. Costs nothing until it is asked.
class CostMeter {
  public:
    CostMeter();

    /// Takes about a millisecond, most of it for the memory. Any thread.
    [[nodiscard]] ProcessCost cost() const;

  private:
    std::chrono::steady_clock::time_point beginning_;
    ProcessCost before_; ///< what the process had cost by then
};

/// The sizes in the text of /proc/PID/smaps_rollup, as proc(5) describes it. No value if one is missing.
std::optional<MemoryUse> memoryUseIn(std::string_view smapsRollup);

} // namespace kelvinbar
