#pragma once

#include "base/Finding.h"
#include "desktop/linux/tray/TrayFacts.h"

#include <vector>

namespace kelvinbar {

/// Which tray there is, what it shows, where the item of the program is or why it cannot be seen, and what to
/// do about it. Pure function.
std::vector<Finding> trayFindings(const TrayFacts& facts);

} // namespace kelvinbar
