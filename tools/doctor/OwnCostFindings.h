#pragma once

#include "base/Finding.h"
#include "process/TrayProgram.h"

namespace kelvinbar {

/// What the tray program costs, as it has answered; without an answer, `own`: what this run costs. Pure
/// function; any thread.
FindingSection ownCostFindings(const TrayAnswer& answer, const ProgramCost& own);

} // namespace kelvinbar
