#pragma once

#include "catalogue/SMCReading.h"
#include "process/CostMeter.h"
#include "process/TrayProgram.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// How long an answer of the tray program is waited for.
inline constexpr std::chrono::seconds longestWaitForTray{1};

/// What this program has cost since `meter` was made. `accesses`: to files and drivers in its last pass.
ProgramCost costOfThisProgram(const CostMeter& meter, std::optional<std::size_t> accesses);

/// Tells again and again what one program costs, as readings: the tray program, or this one if the tray
/// program does not answer the first time. The numbers of two programs are never mixed. Main thread.
class OwnCost {
  public:
    /// `ask` asks the tray program; `report` says a sentence on standard error.
    OwnCost(std::function<TrayAnswer()> ask, std::function<void(const std::string& sentence)> report);

    /// The readings of now. Empty while the tray program, which has answered before, does not; it is asked
    /// each time. `accesses`: to files and drivers in the last pass of this program.
    std::vector<SMCReading> readings(std::optional<std::size_t> accesses);

  private:
    enum class Subject : std::uint8_t { unknown, trayProgram, thisProgram };

    void choose(const TrayAnswer& answer);
    std::vector<SMCReading> readingsOfTray(const TrayAnswer& answer);

    std::function<TrayAnswer()> ask_;
    std::function<void(const std::string&)> report_;
    CostMeter meter_;
    Subject subject_ = Subject::unknown;
    bool isAway_ = false; ///< the tray program, which has answered before; it was said
};

} // namespace kelvinbar
